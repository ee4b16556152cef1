#include "Extensions/ABAddressBook-QNExtensions.h"
#include "Platform/Foundation/ABAddressBook.h"
#include "Support/Testing.h"

namespace {

using Addresses = std::vector<Text>;

TEST(ABAddressBook, ReadsTheFirstCard) {
  const std::pair<std::string_view, Addresses> rows[] = {
      {"BEGIN:VCARD\r\nVERSION:4.0\r\nEMAIL:ann@example.org\r\nFN:Ann\r\nEMAIL;TYPE=work:a@b.c\r\nEND:VCARD\r\n"
       "BEGIN:VCARD\r\nEMAIL:other@example.org\r\nEND:VCARD\r\n",
       {u"ann@example.org", u"a@b.c"}},
      {"\xEF\xBB\xBFjunk\nEMAIL:before@x.y\nEND:VCARD\nbegin:vcard\nitem1.email;type=\"a:b\":\n  "
       "folded@\n\texample.org\n",
       {u"folded@example.org"}},
      {"BEGIN:VCARD\nEMAIL;INTERNET;ENCODING=QUOTED-PRINTABLE:=61=6E=6E=\n@x.org=\n\nEND:VCARD", {u"ann@x.org"}},
      {"BEGIN:VCARD\nEMAIL:a\\,b\\;c\\\\d\nEMAILS:no\nXEMAIL:no\nEMAIL:\nEMAIL\nEMAIL;X=1\nEMAIL:  \n", {u"a,b;c\\d"}},
      {"BEGIN:VCARD\nAGENT:\nBEGIN:VCARD\nEMAIL:agent@x.y\nEND:VCARD\nEMAIL:me@x.y\nEND:VCARD", {u"me@x.y"}},
  };
  for (const auto& [bytes, expected] : rows) {
    const auto person = readVCard(bytes);
    ASSERT_TRUE(person) << bytes;
    EXPECT_EQ(person->emailAddresses, expected) << bytes;
  }
  EXPECT_FALSE(readVCard("EMAIL:a@b.c\nEND:VCARD\n"));
}

TEST(ABAddressBook, TheUsersOwnCardIsInTheDataFolder) {
  TemporaryFolder folder;
  setenv("XDG_DATA_HOME", folder.path().c_str(), 1);
  EXPECT_THAT(ABAddressBookExtensions::myEmailAddresses(), ElementsAre());
  folder.write("contacts/me.vcf", "BEGIN:VCARD\nEMAIL:b@x.y\nEMAIL:a@x.y\nEND:VCARD\n");
  EXPECT_THAT(ABAddressBookExtensions::myEmailAddresses(), ElementsAre(u"b@x.y", u"a@x.y"));
}

}  // namespace
