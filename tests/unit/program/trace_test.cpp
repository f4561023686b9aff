#include "tools/trace/trace.h"

#include <sstream>

#include "tests/unit/program/program_test.h"
#include "tools/trace/json.h"

namespace murmelix::test {

namespace {

class Trace : public ProgramTest {
  protected:
    static std::string messages(const std::string& lines, const trace::MessageOptions& options = {}) {
        std::istringstream in(lines);
        std::ostringstream out;
        trace::traceMessages(options, in, out);
        return out.str();
    }

    int capture(const std::string& lines) {
        std::istringstream in(lines);
        std::ostringstream out, err;
        const int status = trace::traceCapture(in, out, err);
        out_ = out.str();
        err_ = err.str();
        return status;
    }

    static std::string spoken(const std::string& text) {
        return R"([{"key":"b@x","call":"Stop","text":"play"},)"
               R"({"key":"b@x","call":"Play","animation":"StartListening"},)"
               R"({"key":"a@x","call":"Stop","text":"play"},{"key":"a@x","call":"Play","animation":"restpose"},)"
               R"({"key":"a@x","call":"Speak","text":")" +
               text + "\"}]\n";
    }

    std::string out_, err_;
};

constexpr const char* start =
    R"({"me":{"signin":"me@x","friendly":"Me"},"contacts":[{"signin":"ann@x","friendly":"Ann"}],"history":"Hello"})"
    "\n";

TEST_F(Trace, MessageShowsEveryCallInOrder) {
    EXPECT_EQ(messages("hi\n"), spoken("Hi"));
    EXPECT_EQ(messages("lol"),
              R"([{"key":"a@x","call":"Stop","text":"play"},{"key":"a@x","call":"Play","animation":"restpose"},)"
              R"({"key":"a@x","call":"Speak","text":" ","url":"S:\\sounds\\default\\laugh.wav"}])"
              "\n");
}

TEST_F(Trace, LinesAreIndependent) {
    const std::string hidden = messages("brb\n");
    EXPECT_THAT(hidden, testing::EndsWith(R"({"key":"a@x","call":"Hide"}])"
                                          "\n"));
    EXPECT_EQ(messages("brb\nhi\n\n"), hidden + spoken("Hi") + "[]\n");
}

TEST_F(Trace, EscapesAreUnderstoodAndOthersKept) {
    trace::MessageOptions options;
    options.ignore = false;
    EXPECT_EQ(messages("a\\r\\nb\\\\n\n", options), spoken("A\\r\\nB\\\\n"));
    EXPECT_EQ(messages("x\\u00e9\\uD83D\\uDE00\n", options), spoken("X\xC3\xA9\xF0\x9F\x98\x80"));
    EXPECT_EQ(messages("\\q \\u12 \\uXYZW \\\n", options), spoken("\\\\q \\\\u12 \\\\uxyzw \\\\"));
}

TEST_F(Trace, UnpairedSurrogatesAndControlsAreEscaped) {
    EXPECT_EQ(messages("x\\ud800\\u0000\\udc00\\u0001y\n"), spoken("X\\ud800\\u0000\\udc00\\u0001y"));
    EXPECT_EQ(messages("x\xFFy\n"), spoken("X\xEF\xBF\xBDy"));
}

TEST_F(Trace, SwitchesTurnTheOptionsOff) {
    trace::MessageOptions options;
    options.correct = options.emoticons = options.ignore = false;
    EXPECT_EQ(messages("a#ooo :)\n", options), spoken("A#ooo "));
    options.ignore = true;
    options.ignored = u"o";
    EXPECT_EQ(messages("a#ooo\n", options), spoken("A#"));
    options.ignored = u"";
    EXPECT_EQ(messages("a#ooo\n", options), spoken("A#ooo"));
}

TEST_F(Trace, CaptureShowsEveryTick) {
    EXPECT_EQ(capture(std::string(start) + "{\"ticks\":1}\n{\"append\":\"\\r\\nAnn says:\\r\\nhi \\ud800\"}\n"
                                           "{\"ticks\":2}\n"),
              0);
    EXPECT_EQ(out_, "{\"position\":7,\"user\":\"\",\"speak\":null}\n"
                    "{\"position\":24,\"user\":\"ann@x\",\"speak\":{\"key\":\"ann@x\",\"text\":\"hi \\ud800\"}}\n"
                    "{\"position\":24,\"user\":\"\",\"speak\":null}\n");
    EXPECT_EQ(err_, "");
}

TEST_F(Trace, CaptureRefusesWhatItCannotUnderstand) {
    for (const char* line :
         {"{", "nonsense", "[]", "{\"ticks\":-1}", "{\"ticks\":1.5}", "{\"ticks\":\"1\"}", "{\"append\":7}", "{}",
          "{\"append\":\"\\u12\"}", "{\"append\":\"x", "{\"ticks\":1}}", "{\"ticks\":99999999999}", "nul"}) {
        EXPECT_EQ(capture(std::string(start) + line + "\n{\"ticks\":1}\n"), 1) << line;
        EXPECT_EQ(out_, "") << line;
        EXPECT_THAT(err_, testing::StartsWith("trace capture: line 2: ")) << line;
    }
    for (const char* line : {"{\"ticks\":1}", "{\"me\":{}}", "3"}) {
        EXPECT_EQ(capture(line), 1) << line;
    }
    EXPECT_EQ(capture(std::string(100000, '[')), 1);
}

TEST_F(Trace, JsonTextsAreReadWithAllTheirEscapes) {
    EXPECT_EQ(trace::parseJson(R"( "\"\\\/\b\f\n\r\té\u00e9" )").text(), u"\"\\/\b\f\n\r\t\u00E9\u00E9");
    EXPECT_EQ(trace::parseJson("[1, true ,null,{}]").array().size(), 4u);
    EXPECT_EQ(trace::quoted(u"\"\\\t\u00E9"), "\"\\\"\\\\\\t\xC3\xA9\"");
}

} // namespace

} // namespace murmelix::test
