#include "download/img_down_frm.h"

#include <gmock/gmock.h>

#include "app/shell_state.h"
#include "platform/message_box.h"
#include "tests/fakes/fakes.h"
#include "tests/fakes/ui/windows.h"

namespace murmelix {
namespace {

using fakes::Drawing;
using testing::ElementsAre;
using testing::IsEmpty;

const std::u16string file = u"C:\\Murmelix\\CharPics\\Robby.gif";
const std::string good_header = "HTTP/1.0 200 OK\r\nContent-Length: 4\r\n\r\n";

class ImgDownFrmTest : public testing::Test {
  protected:
    ImgDownFrmTest() {
        fakes::reset();
        CharPicsDir = u"C:\\Murmelix\\CharPics";
        fakes::system().directories.insert(CharPicsDir);
    }

    // Fetches the picture of a character; `meanwhile` is what happens while the window is open.
    void fetch(const std::function<void()>& meanwhile, const std::u16string& name = u"Robby") {
        ImgDownFrm window(nullptr);
        open = &window;
        window.CharacterName = name;
        bool was_open = false;
        fakes::screen().while_modal = [&](const ui::Form&) {
            was_open = window.Loaded();
            meanwhile();
            ended_by_itself = !window.Loaded();
            window.Unload();
        };
        window.ShowModal();
        EXPECT_TRUE(was_open);
        EXPECT_TRUE(fakes::network().connections.empty() || fakes::network().connections.back().closed_here);
        open = nullptr;
    }

    // The same from a server that answers so and closes the connection.
    void fetchAnswered(const std::string& answer) {
        fetch([&] {
            fakes::accept();
            if (!answer.empty()) {
                fakes::send(answer);
            }
            fakes::closeByServer();
        });
    }

    static std::vector<fakes::MessageBox> boxes() { return fakes::messageBoxes().shown; }
    static fakes::MessageBox critical(const std::u16string& title, const std::u16string& text) {
        return {text, 16, title};
    }
    static const std::map<std::u16string, std::string>& files() { return fakes::files().content; }

    ImgDownFrm* open = nullptr;
    bool ended_by_itself = false;
};

TEST_F(ImgDownFrmTest, FetchesAPictureWithOneRequest) {
    fetch([&] {
        EXPECT_EQ(open->Caption(), u"Downloading Character Image");
        EXPECT_EQ(open->MsgLbl.Caption(), u"Please wait while Murmelix downloads an image for Robby");
        EXPECT_EQ(open->CancelDoldButt.Caption(), u"&Cancel Download");
        EXPECT_EQ(open->CancelDoldButt.ToolTipText(), u"Cancel the character image download");
        EXPECT_TRUE(fakes::accept());
        EXPECT_TRUE(fakes::send(good_header));
        EXPECT_TRUE(fakes::send("GIF8"));
        EXPECT_TRUE(fakes::closeByServer());
    });
    EXPECT_TRUE(ended_by_itself);
    ASSERT_EQ(fakes::network().connections.size(), 1U);
    const fakes::Connection& connection = fakes::network().connections[0];
    EXPECT_EQ(connection.host, u"www.example.org");
    EXPECT_EQ(connection.port, 80);
    EXPECT_EQ(connection.sent, "GET /murmelix/download/charimgs/robby.gif HTTP/1.0\r\n"
                               "Accept: */*\r\nAccept: image/gif\r\n\r\n");
    EXPECT_THAT(files(), ElementsAre(std::pair(file, std::string("GIF8"))));
    EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(ImgDownFrmTest, SiteOnAnotherPortIsAskedThere) {
    fakes::system().site_host = u"localhost:8080";
    fetch([] {});
    EXPECT_EQ(fakes::network().connections.at(0).host, u"localhost");
    EXPECT_EQ(fakes::network().connections.at(0).port, 8080);
}

TEST_F(ImgDownFrmTest, ProgressIsTextInTheMiddleAndABoxOverIt) {
    fetch([&] {
        open->progress.Move({0, 0, 3000, 300}); // 200 × 20 pixels
        fakes::accept();
        fakes::send(good_header + "G");
        EXPECT_THAT(fakes::drawings(open->progress.surface()), IsEmpty()); // not for the packet of the header
        fakes::send("I");
        // 18 characters of 6 pixels.
        EXPECT_THAT(fakes::drawings(open->progress.surface()),
                    ElementsAre(Drawing{Drawing::Kind::text, {46, 3, 0, 0}, ui::window_text, u"50% Downloading..."},
                                Drawing{Drawing::Kind::fill_not_xor, {0, 0, 100, 20}, ui::highlight}));
        const int before = fakes::refreshes(open->progress.surface());
        fakes::send("F8more");
        EXPECT_EQ(fakes::drawings(open->progress.surface()).at(0).text, u"200% Downloading...");
        EXPECT_EQ(fakes::drawings(open->progress.surface()).at(1).area, (ui::Rect{0, 0, 400, 20}));
        EXPECT_EQ(fakes::refreshes(open->progress.surface()), before + 1);
    });
}

TEST_F(ImgDownFrmTest, PercentOfNothingIsASignAlone) {
    fetch([&] {
        fakes::accept();
        fakes::send("HTTP/1.0 200 OK\r\nContent-Length: 4000\r\n\r\n");
        fakes::send("G");
        EXPECT_EQ(fakes::drawings(open->progress.surface()).at(0).text, u"% Downloading...");
    });
}

TEST_F(ImgDownFrmTest, AnswerWithoutALengthIsSavedAllTheSame) {
    fetch([&] {
        fakes::accept();
        fakes::send("HTTP/1.0 200 OK\r\nServer: x\r\n\r\n");
        fakes::send("GIF");
        EXPECT_EQ(fakes::drawings(open->progress.surface()).at(0).text, u"300% Downloading...");
        fakes::closeByServer();
    });
    EXPECT_EQ(files().at(file), "GIF");
}

TEST_F(ImgDownFrmTest, StatusLineAloneOrAnotherStatusIsNotFound) {
    for (const std::string& answer :
         {std::string("HTTP/1.0 200 OK\r\n\r\nGIF8"), std::string("HTTP/1.0 404 Not Found\r\nA: b\r\n\r\nno")}) {
        fakes::messageBoxes().shown.clear();
        fetchAnswered(answer);
        EXPECT_TRUE(ended_by_itself);
        ASSERT_EQ(boxes().size(), 1U);
        EXPECT_EQ(boxes()[0].title, u"Image not found!");
        EXPECT_EQ(boxes()[0].style, 16);
        EXPECT_TRUE(boxes()[0].text.starts_with(u"No image for Robby was found for download!\r\n"));
        EXPECT_NE(boxes()[0].text.find(u"support@example.org"), std::u16string::npos);
        EXPECT_THAT(files(), IsEmpty());
    }
}

TEST_F(ImgDownFrmTest, MissingDirectoryIsToldBeforeAnythingElse) {
    fakes::system().directories.erase(CharPicsDir);
    fetchAnswered("");
    EXPECT_THAT(boxes(), ElementsAre(critical(u"Char Image Directory Not found!",
                                              u"Your character image directory can not be found!\r\n"
                                              u"Please reinstall Murmelix to correct this error")));
    EXPECT_TRUE(ended_by_itself);
}

TEST_F(ImgDownFrmTest, NothingOrNoWholeHeaderIsAnUnknownError) {
    for (const std::string& answer : {std::string(), std::string("HTTP/1.0 200 OK\r\nContent-Length: 4\r\n")}) {
        fakes::messageBoxes().shown.clear();
        fetchAnswered(answer);
        EXPECT_THAT(boxes(),
                    ElementsAre(critical(u"Unknown Download Error!",
                                         u"An unknown error has occured while downloading the character image!")));
        EXPECT_THAT(files(), IsEmpty());
    }
}

TEST_F(ImgDownFrmTest, FileThatCannotBeWrittenIsToldWithItsNumberAndTakenAway) {
    fakes::files().full.insert(file);
    fetchAnswered(good_header + "GIF8");
    EXPECT_THAT(boxes(),
                ElementsAre(critical(u"Error #112", u"An Error has occured while getting/saving character image!"
                                                    u"\r\nThe disk is full (112)")));
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_TRUE(ended_by_itself);
}

TEST_F(ImgDownFrmTest, SocketErrorIsToldAndTheFileTakenAway) {
    fakes::files().content[file] = "old";
    fetch([] { fakes::failConnection(10061, u"Connection refused (10061)"); });
    EXPECT_THAT(boxes(),
                ElementsAre(critical(u"Error Downloading Image!", u"Error downloading character image from server!\r\n"
                                                                  u"Connection refused (10061)")));
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_TRUE(ended_by_itself);
}

TEST_F(ImgDownFrmTest, MoreThanAnyPictureEndsAsASocketErrorDoes) {
    fetch([] {
        fakes::accept();
        fakes::send(good_header);
        for (int megabyte = 0; megabyte < 100 && fakes::send(std::string(1024 * 1024, 'x')); ++megabyte) {
            EXPECT_LE(megabyte, 16);
        }
    });
    ASSERT_EQ(boxes().size(), 1U);
    EXPECT_EQ(boxes()[0].title, u"Error Downloading Image!");
    EXPECT_TRUE(boxes()[0].text.starts_with(u"Error downloading character image from server!\r\n"));
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_TRUE(ended_by_itself);
}

TEST_F(ImgDownFrmTest, CancelInTheMiddleClosesAndTakesTheFileAway) {
    fakes::files().content[file] = "partly";
    fetch([&] {
        fakes::accept();
        fakes::send(good_header + "G");
        EXPECT_TRUE(fakes::click(open->CancelDoldButt));
        EXPECT_TRUE(fakes::network().connections[0].closed_here);
    });
    EXPECT_TRUE(ended_by_itself);
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(ImgDownFrmTest, CloseBoxAndEscapeCancel) {
    fetch([&] {
        fakes::close(*open);
        EXPECT_FALSE(open->Loaded());
    });
    fetch([&] {
        fakes::key(*open, ui::Key::escape);
        EXPECT_FALSE(open->Loaded());
    });
}

TEST_F(ImgDownFrmTest, WindowThatIsUnloadedFromOutsideClosesTheConnectionAndForgets) {
    ImgDownFrm window(nullptr);
    window.CharacterName = u"Robby";
    window.Show();
    fakes::accept();
    fakes::send(good_header + "GI");
    window.Unload(); // by a sign-out
    EXPECT_TRUE(fakes::network().connections[0].closed_here);
    window.Show();
    fakes::accept();
    fakes::send(good_header + "F8");
    fakes::closeByServer();
    EXPECT_EQ(files().at(file), "F8");
}

TEST_F(ImgDownFrmTest, WindowUnloadedWhileABoxIsOpenStaysUnloaded) {
    ImgDownFrm window(nullptr);
    window.CharacterName = u"Robby";
    window.Show();
    fakes::accept();
    fakes::messageBoxes().while_open = [&] { window.Unload(); };
    fakes::closeByServer();
    EXPECT_EQ(boxes().size(), 1U);
    EXPECT_FALSE(window.Loaded());
}

TEST_F(ImgDownFrmTest, LongerFileThatIsThereIsNotCut) {
    fakes::files().content[file] = "0123456789";
    fetchAnswered(good_header + "GIF8");
    EXPECT_EQ(files().at(file), "GIF8456789");
}

TEST_F(ImgDownFrmTest, NameThatLeadsElsewhereIsNotFoundAndNothingIsSentOrWritten) {
    for (const std::u16string& name : {std::u16string(u"..\\..\\autoexec"), std::u16string(u"a\r\nHost: b"),
                                       std::u16string(10'000, u'\x01'), std::u16string(u"..")}) {
        fakes::messageBoxes().shown.clear();
        fakes::network().connections.clear();
        fetch([] { fakes::accept(); }, name);
        ASSERT_EQ(boxes().size(), 1U);
        EXPECT_EQ(boxes()[0].title, u"Image not found!");
        EXPECT_EQ(fakes::network().connections.at(0).sent, "");
        EXPECT_THAT(files(), IsEmpty());
        EXPECT_EQ(imageFile(name), u"");
    }
    EXPECT_EQ(imageFile(u"Robby"), file);
}

} // namespace
} // namespace murmelix
