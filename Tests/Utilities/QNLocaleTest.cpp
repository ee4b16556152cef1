#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Foundation/UserLanguages.h"
#include "Support/PreferencesTest.h"
#include "Utilities/QNLocale.h"

namespace {

struct QNLocaleTest : PreferencesTest {
  QNLocaleTest() {
    for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LC_TIME", "LANG"}) ::unsetenv(variable);
  }

  void prefer(std::vector<Ref<NSObject>> codes) {
    setObject(NSUserDefaultsControllerExtensions::standardUserDefaults(), std::make_shared<NSArray>(std::move(codes)),
              u"AppleLanguages");
  }

  CapturedSystemLog myLog;
};

TEST_F(QNLocaleTest, TheListHoldsWhatUsersAskFor) {
  const auto& locales = QNLocale::locales();
  EXPECT_EQ(locales.size(), 100U);
  EXPECT_THAT(myLog.take(), ElementsAre(u"WARN: There are more locales than expected."));
  for (const TextView code : {u"en", u"de", u"zh_Hans", u"zh_Hant", u"zu"})
    EXPECT_TRUE(QNLocale::localeByCode(code)) << utf8(code);
}

TEST_F(QNLocaleTest, LookUpByCode) {
  // What is asked for, and the code of the locale that is found; empty for none.
  const std::pair<TextView, TextView> rows[] = {{u"de_DE", u"de"},
                                                {u"DE-de", u"de"},
                                                {u"zh_TW", u"zh_Hant"},
                                                {u"zh_CN", u"zh"},
                                                {u"pt_BR", u"pt"},
                                                {u"en_US", u"en_US"},
                                                {u"iw", u"he"},
                                                {u"nb_NO", u"nb"},
                                                {u"zh_Hant_TW", u"zh_Hant"},
                                                {u"sr_Latn_RS", u"sr_Latn"},
                                                {u"de_CH", u""},
                                                {u"tlh", u""},
                                                {u"", u""},
                                                {u"not a code", u""},
                                                {u"en_XX", u""},
                                                {{u"en\0x", 4}, u""}};
  for (const auto& [code, wanted] : rows) {
    const Ref<QNLocale> locale = QNLocale::localeByCode(code);
    EXPECT_EQ(locale ? locale->locale().code() : Text(), wanted);
  }
  EXPECT_EQ(QNLocale::englishLocale(), QNLocale::localeByCode(u"en"));
  EXPECT_FALSE(QNLocale::localeByLocale(LocaleRef::fromCode(u"en")));
}

TEST_F(QNLocaleTest, PreferencesDecide) {
  prefer({box(u"tlh"), box(u"de"), box(7), box(u"en")});
  setString(NSUserDefaultsControllerExtensions::standardUserDefaults(), u"fr_FR", u"AppleLocale");
  QNLocale::locales();
  myLog.take();
  EXPECT_THAT(QNLocale::preferedLanguages(), ElementsAre(QNLocale::localeByCode(u"de"), QNLocale::englishLocale()));
  EXPECT_THAT(myLog.take(), ElementsAre(u"Can't create locale 'tlh'.", u"Can't create locale '7'."));
  EXPECT_EQ(QNLocale::preferedLanguage(), QNLocale::localeByCode(u"de"));
  EXPECT_EQ(QNLocale::defaultLocale(), QNLocale::localeByCode(u"fr"));
  const QNLocale canadian(LocaleRef::fromCode(u"fr_CA"), 0);
  EXPECT_EQ(canadian.displayName(), u"Französisch (Kanada)");
  EXPECT_EQ(canadian.englishDisplayName(), u"French (Canada)");
}

TEST_F(QNLocaleTest, NoPreferedLanguage) {
  prefer({});
  QNLocale::locales();
  myLog.take();
  EXPECT_FALSE(QNLocale::preferedLanguage() || QNLocale::englishLocale()->displayName());
  EXPECT_THAT(myLog.take(), ElementsAre(u"List of prefered locales is empty.", u"List of prefered locales is empty."));
}

TEST_F(QNLocaleTest, WritesDates) {
  const NSDate date = NSDate::dateWithTimeIntervalSince1970(1235923509);  // in Kathmandu
  const QNLocale german(LocaleRef::fromCode(u"de_CH"), 0);
  EXPECT_EQ(german.dateStringForDate(date), u"Sonntag, 1. März 2009");
  EXPECT_EQ(german.dateAndTimeStringForDate(date), u"1. März 2009 um 21:50:09");
  EXPECT_EQ(german.dateStringForDate(NSDate::dateWithTimeIntervalSince1970(1e18)), u"");
  EXPECT_EQ(german.monthNameForMonth(3), u"März");
  EXPECT_EQ(QNLocale(LocaleRef::fromCode(u"cs"), 0).monthNameForMonth(1), u"leden");  // and not "ledna"
  for (const int month : {0, 13, -1, INT_MIN}) EXPECT_THROW(german.monthNameForMonth(month), std::out_of_range);
  EXPECT_THAT([&] { german.monthNameForMonth(0); },
              ThrowsMessage<std::out_of_range>("monthNameForMonth: there is no month 0"));
}

TEST_F(QNLocaleTest, TheEnvironmentsLanguages) {
  const std::tuple<const char*, const char*, const char*, TextView, TextView> rows[] = {
      {"", "", "", u"en", u"en"},
      {"de:fr", "C.UTF-8", "", u"en", u"en"},
      {"", "de_CH.UTF-8", "", u"de", u"de_CH"},
      {"pt_BR:pt_PT::en", "pt_BR.UTF-8", "en_GB.UTF-8", u"pt en", u"en_GB"},
      {"", "zh_TW", "", u"zh_Hant", u"zh_TW"},
      {"", "sr_RS.UTF-8@latin", "C", u"sr_Latn", u"en"},
      {"", "ca_ES@valencia", "", u"ca", u"ca_ES"}};
  for (const auto& [languageVariable, langVariable, timeVariable, wanted, locale] : rows) {
    ::setenv("LANGUAGE", languageVariable, 1);
    ::setenv("LANG", langVariable, 1);
    ::setenv("LC_TIME", timeVariable, 1);
    const auto defaults = languageDefaults();
    Text languages;
    for (const auto& language : *as<NSArray>(defaults->objectForKey(u"AppleLanguages")))
      languages += (languages.empty() ? u"" : u" ") + description(language);
    EXPECT_EQ(languages, wanted);
    EXPECT_EQ(description(defaults->objectForKey(u"AppleLocale")), locale);
  }
}

}  // namespace
