// Any answer to the request for a character's picture, in portions of any size. The first bytes choose the portions,
// how it ends, and the character's name.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "app/shell_state.h"
#include "download/img_down_frm.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"
#include "tests/fuzz/bytes.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace murmelix;

enum class End { closed, cancelled, failed, without_directory, count };

// What is to be in the file; nothing: no picture was found.
std::optional<std::string> pictureIn(const std::string& answer) {
    const std::size_t end = answer.find("\r\n\r\n");
    if (end == std::string::npos || answer.substr(0, end + 1).find("200 OK\r\n") == std::string::npos) {
        return std::nullopt;
    }
    return answer.substr(end + 4);
}

void checkPortions(const std::string& answer, std::size_t portion) {
    ImageAnswer whole, parts;
    whole.take(answer);
    for (std::size_t at = 0; at < answer.size(); at += portion) {
        parts.take(std::string_view(answer).substr(at, portion));
    }
    require(whole.hasHeader() == parts.hasHeader() && whole.found() == parts.found() && whole.body() == parts.body() &&
                whole.tooLong() == parts.tooLong(),
            "the portions in which it comes do not matter");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const std::size_t portion = 1U + bytes.byte();
    const End end = static_cast<End>(bytes.byte() % static_cast<int>(End::count));
    const std::u16string name = Bytes::text(bytes.until('\n'), false);
    const std::string answer(bytes.all());
    if (answer.size() / portion < 1000) {
        checkPortions(answer, portion);
    }

    fakes::reset();
    CharPicsDir = u"C:\\Murmelix\\CharPics";
    if (end != End::without_directory) {
        fakes::system().directories.insert(CharPicsDir);
    }
    const bool has_name = isFileName(name);
    bool had_connection = false, ended_by_itself = false;
    {
        ImgDownFrm window(nullptr);
        window.CharacterName = name;
        fakes::screen().while_modal = [&](const ui::Form&) {
            had_connection = fakes::accept() && fakes::network().open != nullptr;
            for (std::size_t at = 0; at < answer.size() && fakes::send(answer.substr(at, portion)); at += portion) {
                require(fakes::files().content.empty(), "nothing is written before the end");
            }
            if (window.Loaded()) {
                switch (end) {
                case End::cancelled:
                    window.CancelDoldButt_Click();
                    break;
                case End::failed:
                    fakes::failConnection(10054, u"It broke.");
                    break;
                default:
                    fakes::closeByServer();
                }
            }
            ended_by_itself = !window.Loaded();
            window.Unload();
        };
        window.ShowModal();
    }
    require(ended_by_itself, "every answer has an end");
    require(fakes::network().connections.size() == 1 && fakes::network().connections[0].closed_here,
            "there was one connection, and it is closed");
    require(had_connection == has_name, "what is no name is not asked for");

    const auto picture = pictureIn(answer);
    const bool saved = has_name && end == End::closed && picture;
    const auto& files = fakes::files().content;
    require(files.size() == (saved ? 1U : 0U), "a picture is saved where there is one");
    if (saved) {
        require(files.begin()->first == CharPicsDir + u"\\" + name + u".gif", "in its own file");
        require(files.begin()->second == *picture, "as it came");
    }
    require(fakes::messageBoxes().shown.size() == (saved || (has_name && end == End::cancelled) ? 0U : 1U),
            "where there is none, that is said once");
    require(fakes::network().connections[0].sent.size() <= 120 + name.size(), "what is asked is one request");
    return 0;
}
