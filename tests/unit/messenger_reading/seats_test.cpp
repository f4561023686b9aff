// Who gets a seat, who loses one, and how it is called.
#include "companions/messenger/reading/seats.h"

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"

namespace messenger_client::reading {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SeatsTest : testing::Test {
    Seats seats;
    SeatChanges changes;

    // "-ann +bob" and the name of the seat.
    std::string write(const std::u16string& name) {
        const Seat seat = seats.take(name + u"@net", name, changes);
        return told() + murmelix::toUtf8(seat.name);
    }
    std::string told() {
        std::string text;
        for (const SeatChange& change : std::exchange(changes, {})) {
            const std::string name = murmelix::toUtf8(change.seat.name) + " ";
            text += (change.kind == SeatChange::Kind::added     ? "+"
                     : change.kind == SeatChange::Kind::removed ? "-"
                                                                : "=") +
                    name;
        }
        return text;
    }
    void arrange(int most, bool shares, const std::vector<std::u16string>& pinned = {}) {
        People people;
        for (const std::u16string& name : pinned) {
            people.push_back({name + u"@net", name});
        }
        seats.arrange(most, shares, people, changes);
    }
    std::vector<std::string> order() {
        std::vector<std::string> names;
        for (const Seat& seat : seats.inOrder()) {
            names.push_back(murmelix::toUtf8(seat.name));
        }
        return names;
    }
};

TEST_F(SeatsTest, WhoWritesTakesASeat) {
    EXPECT_EQ(write(u"ann"), "+ann ann");
    EXPECT_EQ(write(u"ann"), "ann");
    EXPECT_EQ(write(u"bob"), "+bob bob");
    EXPECT_EQ(*seats.of(u"bob@net"), (Seat{u"bob@net", u"bob"}));
    EXPECT_EQ(*seats.of(u"BOB@net"), (Seat{u"bob@net", u"bob"}));
    EXPECT_EQ(seats.of(u"cid@net"), nullptr);
}

TEST_F(SeatsTest, SixAreOnStageAtMostAtFirst) {
    for (const char16_t letter : u"abcdef") {
        if (letter != 0) {
            write(std::u16string(1, letter));
        }
    }
    EXPECT_EQ(seats.count(), 6u);
    EXPECT_EQ(write(u"g"), "-a +g g");
}

TEST_F(SeatsTest, WhoHasBeenSilentLongestGoes) {
    arrange(3, false);
    write(u"ann");
    write(u"bob");
    write(u"cid");
    write(u"ann");
    EXPECT_EQ(write(u"dan"), "-bob +dan dan");
    EXPECT_EQ(write(u"bob"), "-cid +bob bob");
    EXPECT_EQ(write(u"ann"), "ann");
}

TEST_F(SeatsTest, PinnedOnesStay) {
    arrange(3, false, {u"ann", u"bob"});
    write(u"ann");
    write(u"bob");
    write(u"cid");
    EXPECT_EQ(write(u"dan"), "-cid +dan dan");
    EXPECT_EQ(write(u"eve"), "-dan +eve eve");
    EXPECT_EQ(write(u"ann"), "ann");
}

TEST_F(SeatsTest, OneSeatIsAlwaysLeftForOthers) {
    arrange(2, false, {u"ann", u"bob"});
    write(u"ann");
    write(u"bob");
    EXPECT_EQ(write(u"cid"), "-bob +cid cid");
    arrange(1, false, {u"ann"});
    EXPECT_EQ(told(), "-ann ");
    EXPECT_EQ(write(u"ann"), "-cid +ann ann");
}

TEST_F(SeatsTest, TheRestCanShareASeat) {
    arrange(3, true);
    write(u"ann");
    write(u"bob");
    EXPECT_EQ(write(u"cid"), "+Everyone else Everyone else");
    EXPECT_EQ(write(u"dan"), "Everyone else");
    EXPECT_EQ(write(u"ann"), "ann");
    EXPECT_EQ(seats.of(u"cid@net"), nullptr);
    // A seat that becomes free is one's own again.
    seats.left(u"ann@net", changes);
    EXPECT_EQ(told(), "-ann ");
    EXPECT_EQ(write(u"dan"), "+dan dan");
    EXPECT_EQ(write(u"cid"), "Everyone else");
    EXPECT_THAT(order(), ElementsAre("Everyone else", "bob", "dan"));
}

TEST_F(SeatsTest, PinnedOnesDoNotShare) {
    arrange(2, true, {u"bob"});
    write(u"ann");
    EXPECT_EQ(write(u"bob"), "-ann +bob bob");
    EXPECT_EQ(write(u"ann"), "+Everyone else Everyone else");
}

TEST_F(SeatsTest, AllCanShareOneSeat) {
    arrange(1, true);
    EXPECT_EQ(write(u"ann"), "+Everyone else Everyone else");
    EXPECT_EQ(write(u"bob"), "Everyone else");
}

TEST_F(SeatsTest, SomeChangesAreUnheard) {
    arrange(3, false);
    EXPECT_TRUE(seats.changesUnheard(u"ann@net")) << "a free one is taken";
    write(u"ann");
    EXPECT_FALSE(seats.changesUnheard(u"ann@net")) << "nothing changes";
    write(u"bob");
    EXPECT_TRUE(seats.changesUnheard(u"cid@net"));
    write(u"cid");
    EXPECT_TRUE(seats.changesUnheard(u"dan@net")) << "ann's: bob and cid have spoken since";
    arrange(3, false, {u"ann"});
    EXPECT_FALSE(seats.changesUnheard(u"dan@net")) << "bob's, who may be speaking still";
    arrange(2, false);
    told();
    EXPECT_FALSE(seats.changesUnheard(u"dan@net"));
    EXPECT_EQ(order().size(), 2u) << "asking changes nothing";
}

TEST_F(SeatsTest, TheSharedSeatComesUnheard) {
    arrange(2, true);
    write(u"ann");
    EXPECT_TRUE(seats.changesUnheard(u"bob@net")) << "it is not there yet";
    write(u"bob");
    EXPECT_FALSE(seats.changesUnheard(u"cid@net")) << "it is";
    arrange(2, true, {u"cid"});
    EXPECT_FALSE(seats.changesUnheard(u"cid@net")) << "a pinned one would take ann's, who may be speaking";
}

TEST_F(SeatsTest, WhoLeavesFreesTheSeat) {
    arrange(2, false);
    write(u"ann");
    write(u"bob");
    seats.left(u"ann@net", changes);
    seats.left(u"nobody@net", changes);
    EXPECT_EQ(told(), "-ann ");
    EXPECT_EQ(write(u"cid"), "+cid cid");
    // What a stranger calls himself does not move the shared seat.
    arrange(2, true);
    told();
    write(u"dan");
    seats.left(rest_person, changes);
    EXPECT_EQ(told(), "");
}

TEST_F(SeatsTest, FewerSeatsAreTakenFromTheSilent) {
    write(u"ann");
    write(u"bob");
    write(u"cid");
    write(u"ann");
    arrange(2, false);
    EXPECT_EQ(told(), "-bob ");
    arrange(1, true);
    EXPECT_EQ(told(), "-cid -ann ");
    EXPECT_EQ(write(u"ann"), "+Everyone else Everyone else");
    arrange(2, false);
    EXPECT_EQ(told(), "-Everyone else ");
    arrange(99, false);
    arrange(-1, false);
    EXPECT_EQ(told(), "");
}

TEST_F(SeatsTest, AllSeatsCanBeCleared) {
    write(u"ann");
    write(u"bob");
    seats.clear(changes);
    EXPECT_EQ(told(), "-bob -ann ");
    EXPECT_EQ(seats.count(), 0u);
}

TEST_F(SeatsTest, TheLongestNameComesFirst) {
    write(u"Ann");
    write(u"Bob");
    write(u"Anna");
    write(u"Annabel");
    EXPECT_THAT(order(), ElementsAre("Annabel", "Anna", "Ann", "Bob"));
}

TEST_F(SeatsTest, RenamesAreTold) {
    write(u"ann");
    seats.renamed(u"ann@net", u"Ann Away", changes);
    EXPECT_EQ(told(), "=Ann Away ");
    seats.renamed(u"ann@net", u"Ann Away", changes);
    seats.renamed(u"ann@net", u"Ann  Away", changes); // is shown the same
    seats.renamed(u"bob@net", u"Robert", changes);
    EXPECT_EQ(told(), "");
    const Seat seat = seats.take(u"ann@net", u"Annie", changes);
    EXPECT_EQ(seat.name, u"Annie");
    EXPECT_EQ(told(), "=Annie ");
}

TEST_F(SeatsTest, NoTwoSeatsHaveTheSameName) {
    seats.take(u"1@net", u"Ann", changes);
    EXPECT_EQ(seats.take(u"2@net", u"ann", changes).name, u"ann 2");
    EXPECT_EQ(seats.take(u"3@net", u"ANN", changes).name, u"ANN 3");
    EXPECT_EQ(seats.take(u"2@net", u"ann", changes).name, u"ann 2");
    seats.left(u"1@net", changes);
    EXPECT_EQ(seats.take(u"4@net", u"Ann", changes).name, u"Ann");
    EXPECT_EQ(seats.take(u"5@net", u"Everyone Else", changes).name, u"Everyone Else 1");
}

// Who listens looks for each name, in their order, where a line begins, and for the user's last.
TEST_F(SeatsTest, NobodysLinesAreTakenForAnothers) {
    seats.setMyName(u"Annabel", changes);
    EXPECT_EQ(seats.take(u"1@net", u"Anna", changes).name, u"Anna 2");
    EXPECT_EQ(seats.take(u"2@net", u"nna", changes).name, u"nna 2");
    EXPECT_EQ(seats.take(u"3@net", u"bel", changes).name, u"bel");
    EXPECT_EQ(seats.take(u"4@net", u"Bo", changes).name, u"Bo");
    EXPECT_EQ(seats.take(u"5@net", u"o s", changes).name, u"o s 2");
    EXPECT_EQ(seats.take(u"6@net", u"Bob", changes).name, u"Bob");
    changes.clear();
    seats.setMyName(u"Bobby", changes);
    EXPECT_EQ(told(), "=Anna =nna =Bo 2 =o s =Bob 2 ");
    EXPECT_EQ(seats.of(u"3@net")->name, u"bel");
}

TEST(SeatNameTest, NamesAreMadeHarmless) {
    EXPECT_EQ(seatName(u"Ann", u"ann@net"), u"Ann");
    EXPECT_EQ(seatName(u"  A\r\nn\tn\u202E ", u"ann@net"), u"A n n");
    EXPECT_EQ(seatName(u":) Ann (y)", u"ann@net"), u") Ann y)");
    EXPECT_EQ(seatName(u"::", u"ann@net"), u"ann");
    EXPECT_EQ(seatName(u"", u"(:"), u"Somebody");
    EXPECT_EQ(seatName(u"", u""), u"Somebody");
    EXPECT_EQ(seatName(u"C:\\x\\..", u"ann@net"), u"C\\x\\..");
    EXPECT_EQ(seatName(std::u16string(100'000, u'x'), u"ann@net"), std::u16string(40, u'x'));
    EXPECT_EQ(seatName(std::u16string(39, u'x') + u"👍🏽tail", u"ann@net"), std::u16string(39, u'x') + u"👍🏽");
}

} // namespace

} // namespace messenger_client::reading
