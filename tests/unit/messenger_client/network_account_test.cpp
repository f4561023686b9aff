// Accounts of chat networks: what is filled in, what is kept, and where a password goes.
#include "companions/messenger/chat/network_account.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/text.h"
#include "companions/messenger/chat/accounts.h"
#include "companions/messenger/client/account.h"
#include "tests/fakes/fakes.h"

namespace messenger_client {

namespace {

namespace fakes = murmelix::fakes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Lines = std::vector<std::u16string>;

struct NetworkAccounts : testing::Test {
    Accounts accounts;
    NetworkFields fields{.nick = u"ann", .channels = u"#murmelix, help"};
    NetworkFields streaming{.channels = u"Some_Streamer"};

    NetworkAccounts() { fakes::reset(); }

    NetworkRequest good(AccountKind kind, const NetworkFields& of) const {
        const auto wanted = requestOf(kind, of, accounts);
        const auto* fault = std::get_if<FieldFault>(&wanted);
        EXPECT_FALSE(fault) << murmelix::toUtf8(fault ? fault->sentence : u"");
        return fault ? NetworkRequest() : std::get<NetworkRequest>(wanted);
    }
    // The field that is refused; nothing where none is.
    std::optional<NetworkField> refused(AccountKind kind, const NetworkFields& of) const {
        const auto wanted = requestOf(kind, of, accounts);
        const auto* fault = std::get_if<FieldFault>(&wanted);
        EXPECT_TRUE(!fault || !fault->sentence.empty());
        return fault ? std::optional(fault->field) : std::nullopt;
    }
    std::string remembered() const {
        std::string all;
        for (const std::u16string& line : accounts.lines()) {
            all += murmelix::toUtf8(line) + "\n";
        }
        return all;
    }
    // As the client does it, with the password typed into the form.
    void remember(NetworkFields of, const std::u16string& password, AccountKind kind = AccountKind::irc) {
        of.password = password;
        of.remember = true;
        EXPECT_TRUE(std::holds_alternative<NetworkAccount>(prepareNetwork(accounts, good(kind, of))));
    }
};

TEST_F(NetworkAccounts, KnownNetworksNeedNoServer) {
    const NetworkRequest request = good(AccountKind::irc, fields);
    EXPECT_EQ(request.account.address.host, u"irc.libera.chat");
    EXPECT_EQ(request.account.address.port, 6697);
    EXPECT_TRUE(request.account.address.tls);
    EXPECT_THAT(request.account.address.channels, ElementsAre(u"#murmelix", u"#help"));
    EXPECT_EQ(signinOf(request.account), u"ann@irc.libera.chat");
    fields.network = 1;
    fields.server = u"ignored.example";
    EXPECT_EQ(good(AccountKind::irc, fields).account.address.host, u"irc.oftc.net");
    fields.without_tls = true;
    EXPECT_EQ(good(AccountKind::irc, fields).account.address.port, 6667);
    EXPECT_FALSE(good(AccountKind::irc, fields).account.address.tls);
}

TEST_F(NetworkAccounts, AnotherServerIsAsFilledIn) {
    fields.network = NetworkFields::other_network;
    fields.server = u" IRC.Example.ORG ";
    fields.port = u" 7000 ";
    EXPECT_EQ(good(AccountKind::irc, fields).account.address.host, u"irc.example.org");
    EXPECT_EQ(good(AccountKind::irc, fields).account.address.port, 7000);
    for (const char16_t* server : {u"", u"a b", u"host:6667", u"irc://host", u"host/x", u"\u202Ehost", u"user@host"}) {
        NetworkFields wrong = fields;
        wrong.server = server;
        EXPECT_EQ(refused(AccountKind::irc, wrong), NetworkField::server) << murmelix::toUtf8(server);
    }
    for (const char16_t* port : {u"", u"0", u"65536", u"-1", u"6667x", u"1e3", u"99999999999999999999"}) {
        NetworkFields wrong = fields;
        wrong.port = port;
        EXPECT_EQ(refused(AccountKind::irc, wrong), NetworkField::port) << murmelix::toUtf8(port);
    }
}

TEST_F(NetworkAccounts, NicksAndNamesAreOneWord) {
    for (const std::u16string& nick : {std::u16string(), std::u16string(u"a b"), std::u16string(u":a"),
                                       std::u16string(u"#a"), std::u16string(u"a\r\nQUIT"), std::u16string(u"a!b"),
                                       std::u16string(u"a@b"), std::u16string(65, u'a'), std::u16string(1, u'\0')}) {
        NetworkFields wrong = fields;
        wrong.nick = nick;
        EXPECT_EQ(refused(AccountKind::irc, wrong), NetworkField::nick) << murmelix::toUtf8(nick);
    }
    for (const char16_t* nick : {u"[a]", u"\u00E4nn", u"a|b{}^`"}) {
        NetworkFields right = fields;
        right.nick = nick;
        EXPECT_EQ(good(AccountKind::irc, right).account.nick, nick);
    }
    fields.channels = u"#a b,\x7";
    EXPECT_EQ(refused(AccountKind::irc, fields), NetworkField::channels);
    fields.channels = u"";
    fields.account = u"a\nb";
    fields.password = u"x";
    EXPECT_EQ(refused(AccountKind::irc, fields), NetworkField::account);
    fields.account = u"ann";
    fields.password = u"x\r\nQUIT";
    EXPECT_EQ(refused(AccountKind::irc, fields), NetworkField::password);
    fields.password = u"";
    EXPECT_EQ(refused(AccountKind::irc, fields), NetworkField::password);
}

TEST_F(NetworkAccounts, AChannelsNameIsEnoughForTheStreamingChat) {
    const NetworkRequest request = good(AccountKind::streaming, streaming);
    EXPECT_EQ(request.account.address.dialect, irc::Dialect::twitch);
    EXPECT_TRUE(request.account.address.tls);
    EXPECT_THAT(request.account.address.channels, ElementsAre(u"#some_streamer"));
    EXPECT_EQ(signinOf(request.account), u"#some_streamer@twitch");
    NetworkFields writer = streaming;
    writer.nick = u" Ann_1 ";
    EXPECT_EQ(refused(AccountKind::streaming, writer), NetworkField::password);
    writer.password = u" oauth:token ";
    EXPECT_EQ(good(AccountKind::streaming, writer).account.nick, u"ann_1");
    EXPECT_EQ(good(AccountKind::streaming, writer).account.password, u"oauth:token");
    EXPECT_EQ(signinOf(good(AccountKind::streaming, writer).account), u"ann_1@twitch");
    writer.nick = u"";
    EXPECT_EQ(refused(AccountKind::streaming, writer), NetworkField::nick);
    writer.nick = u"a n";
    EXPECT_EQ(refused(AccountKind::streaming, writer), NetworkField::nick);
    streaming.channels = u" ";
    EXPECT_EQ(refused(AccountKind::streaming, streaming), NetworkField::channels);
}

TEST_F(NetworkAccounts, APasswordNeedsEncryptionOrTheUsersWord) {
    fields.password = u"secret";
    fields.password_in_the_clear = true; // means nothing while it is encrypted
    EXPECT_FALSE(good(AccountKind::irc, fields).account.password_in_the_clear);
    fields.password_in_the_clear = false;
    fields.without_tls = true;
    EXPECT_EQ(refused(AccountKind::irc, fields), NetworkField::password);
    fields.password_in_the_clear = true;
    EXPECT_TRUE(settingsOf(good(AccountKind::irc, fields).account).password_in_the_clear);
    fields.password = u"";
    fields.password_in_the_clear = false;
    EXPECT_FALSE(refused(AccountKind::irc, fields)) << "without a password there is nothing to protect";
}

TEST_F(NetworkAccounts, PortsFollowTheEncryptionWhereTheyAreTheUsualOnes) {
    EXPECT_EQ(portFor(true, u"6697"), u"6667");
    EXPECT_EQ(portFor(false, u"6667"), u"6697");
    EXPECT_EQ(portFor(true, u"7000"), u"7000");
    EXPECT_EQ(portFor(false, u""), u"6697");
}

TEST_F(NetworkAccounts, ArePlainLinesButForTheirPasswords) {
    remember(fields, u"correct horse");
    accounts.find(u"ann@irc.libera.chat")->secret = "\x01\xAB";
    EXPECT_EQ(remembered(), "ann@irc.libera.chat\t2\t-\t0\tann\n"
                            "\t\tnetwork\tircs://irc.libera.chat/#murmelix,#help\tann\t\t-\t01ab\n");
}

TEST_F(NetworkAccounts, NeverKeepThePasswordItself) {
    remember(fields, u"correct horse");
    const Account* account = accounts.find(u"ann@irc.libera.chat");
    ASSERT_TRUE(account && account->network);
    EXPECT_EQ(account->network->password, u"");
    EXPECT_THAT(remembered(), Not(HasSubstr("correct horse")));
    EXPECT_THAT(account->secret, Not(HasSubstr("correct horse")));
    EXPECT_EQ(fieldsOf(*account).password, u"");
}

TEST_F(NetworkAccounts, ComeBackWithTheirPasswords) {
    fields.network = NetworkFields::other_network;
    fields.server = u"irc.example.org";
    fields.port = u"7000";
    fields.account = u"Ann's";
    fields.without_tls = fields.password_in_the_clear = fields.automatic = true;
    remember(fields, u"p\u00E4ss\\\U0001F511");
    streaming.nick = u"ann";
    remember(streaming, u"oauth:token", AccountKind::streaming);
    storeAccounts(accounts);
    Accounts again;
    loadAccounts(again);
    EXPECT_EQ(again.lines(), accounts.lines());
    const Account* account = again.find(u"ann@irc.example.org");
    ASSERT_TRUE(account);
    EXPECT_EQ(kindOf(*account), AccountKind::irc);
    EXPECT_TRUE(account->automatic);
    const NetworkFields shown = fieldsOf(*account);
    EXPECT_EQ(shown.network, NetworkFields::other_network);
    EXPECT_EQ(shown.server, u"irc.example.org");
    EXPECT_EQ(shown.port, u"7000");
    EXPECT_EQ(shown.channels, u"#murmelix, #help");
    EXPECT_TRUE(shown.without_tls && shown.password_in_the_clear);
    const auto ready = prepareNetwork(again, requestOf(*account));
    ASSERT_TRUE(std::holds_alternative<NetworkAccount>(ready));
    EXPECT_EQ(std::get<NetworkAccount>(ready).password, u"p\u00E4ss\\\U0001F511");
    EXPECT_EQ(std::get<NetworkAccount>(ready).account, u"Ann's");
    const Account* streams = again.find(u"ann@twitch");
    ASSERT_TRUE(streams);
    EXPECT_EQ(kindOf(*streams), AccountKind::streaming);
    EXPECT_EQ(std::get<NetworkAccount>(prepareNetwork(again, requestOf(*streams))).password, u"oauth:token");
}

TEST_F(NetworkAccounts, KeptPasswordsGoToNoOtherServerOrAccount) {
    fields.network = NetworkFields::other_network;
    fields.server = u"irc.example.org";
    fields.port = u"6697";
    remember(fields, u"secret");
    EXPECT_TRUE(good(AccountKind::irc, fields).kept_password);
    const auto none = [&](auto change) {
        NetworkFields other = fields;
        change(other);
        const auto wanted = requestOf(AccountKind::irc, other, accounts);
        const auto* request = std::get_if<NetworkRequest>(&wanted);
        return !request || !request->kept_password;
    };
    EXPECT_TRUE(none([](NetworkFields& f) { f.server = u"irc.elsewhere.example"; }));
    EXPECT_TRUE(none([](NetworkFields& f) { f.port = u"7000"; }));
    EXPECT_TRUE(none([](NetworkFields& f) { f.nick = u"bob"; }));
    EXPECT_TRUE(none([](NetworkFields& f) { f.account = u"bob"; }));
    EXPECT_TRUE(none([](NetworkFields& f) { f.without_tls = f.password_in_the_clear = true; }));
    EXPECT_FALSE(none([](NetworkFields& f) { f.channels = u"#other"; }));
}

TEST_F(NetworkAccounts, WhatCannotBeReadIsAskedForAgain) {
    remember(fields, u"secret");
    fakes::secrets().other_user = true;
    const auto ready = prepareNetwork(accounts, good(AccountKind::irc, fields));
    ASSERT_TRUE(std::holds_alternative<std::u16string>(ready));
    EXPECT_EQ(std::get<std::u16string>(ready), u"The kept password cannot be read any more. Please type it again.");
    EXPECT_TRUE(accounts.find(u"ann@irc.libera.chat"));
}

TEST_F(NetworkAccounts, WhatCannotBeProtectedIsNotKept) {
    fakes::secrets().refused = true;
    remember(fields, u"secret");
    EXPECT_EQ(accounts.find(u"ann@irc.libera.chat")->secret, "");
    EXPECT_FALSE(good(AccountKind::irc, fields).kept_password);
}

TEST_F(NetworkAccounts, AreForgottenWhereTheyShallNotBeRemembered) {
    remember(fields, u"secret");
    fields.password = u"secret";
    const auto ready = prepareNetwork(accounts, good(AccountKind::irc, fields));
    EXPECT_EQ(std::get<NetworkAccount>(ready).password, u"secret");
    EXPECT_THAT(accounts.lines(), testing::IsEmpty());
    EXPECT_FALSE(accounts.find(u"ann@irc.libera.chat"));
}

TEST_F(NetworkAccounts, StoresThatWereTamperedWithAreNoAccounts) {
    const std::u16string account = u"ann@irc.example.org\t2\t-\t0\tann", after = u"bob@x\t2\t-\t0\tBob";
    const auto left = [&](const std::u16string& line) {
        Accounts read;
        read.read({account, line, u"\tcy@x\t2\t-\tCy", after});
        return read.all().size() == 1 && read.all().front().signin == u"bob@x" && !read.all().front().network &&
               read.all().front().contacts.empty();
    };
    const std::u16string good_line = u"\t\tnetwork\tircs://irc.example.org/#a\tann\t\t-\t";
    EXPECT_FALSE(left(good_line));
    for (const std::u16string& line :
         {std::u16string(u"\t\tnetwork\t"), std::u16string(u"\t\tnetwork\tircs://irc.example.org"),
          std::u16string(u"\t\tnetwork\tgopher://irc.example.org\tann\t\t-\t"),
          std::u16string(u"\t\tnetwork\tircs://irc.example.org/#a\tann\\r\\nQUIT\t\t-\t"),
          std::u16string(u"\t\tnetwork\tircs://irc.other.org/#a\tann\t\t-\t"),
          std::u16string(u"\t\tnetwork\tircs://irc.example.org/#a\tbob\t\t-\t"),
          std::u16string(u"\t\tnetwork\tircs://irc.example.org/#a\tann\ta\\nb\t-\t"), good_line + u"0",
          good_line + u"xx", good_line + std::u16string(1'000'000, u'0')}) {
        EXPECT_TRUE(left(line)) << murmelix::toUtf8(line.substr(0, 100));
    }
}

TEST_F(NetworkAccounts, OlderStoresAreReadAsBefore) {
    Accounts read;
    read.read({u"ann@x\t2\tautomatic\t3\tAnn", u"\tcy@x\t34\t-\tCy", u"bob@x\t2\t-\t0\tBob"});
    ASSERT_EQ(read.all().size(), 2U);
    EXPECT_EQ(kindOf(read.all()[0]), AccountKind::local);
    EXPECT_EQ(read.all()[0].contacts.size(), 1U);
    EXPECT_THAT(read.lines(),
                ElementsAre(u"ann@x\t2\tautomatic\t3\tAnn", u"\tcy@x\t34\t-\tCy", u"bob@x\t2\t-\t0\tBob"));
}

} // namespace

} // namespace messenger_client
