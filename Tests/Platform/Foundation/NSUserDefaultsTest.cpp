#include <unistd.h>

#include <iostream>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSKeyValueObserving.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Foundation/NSUserDefaultsController.h"
#include "Platform/Foundation/PropertyList.h"
#include "Support/FaultySystemCalls.h"
#include "Support/Process.h"
#include "Support/Testing.h"

namespace {

struct NSUserDefaultsTest : testing::Test {
  void write(const std::string& bytes) const { folder.write("config/host.plist", bytes); }
  std::string bytes() const { return folder.bytes("config/host.plist"); }
  Ref<NSDictionary> saved() const { return as<NSDictionary>(readPropertyList(bytes()).root); }
  void expectSaved(TextView key, const Ref<NSObject>& value) const {
    const Ref<NSDictionary> dictionary = saved();
    ASSERT_TRUE(dictionary) << bytes();
    EXPECT_TRUE(isEqual(dictionary->objectForKey(key), value)) << bytes();
  }

  TemporaryFolder folder;
  std::string file = folder.path("config/host.plist");
  Text path = folder.text("config/host.plist");
};

TEST_F(NSUserDefaultsTest, SetValuesHideDefaultsAndAreSavedOnDemand) {
  NSUserDefaults defaults(path);
  defaults.registerDefaults(*dictionaryOf({{u"zoom", box(1)}, {u"name", box(u"x")}}));
  defaults.setObject(box(2), u"zoom");
  EXPECT_TRUE(isEqual(defaults.objectForKey(u"zoom"), box(2)));
  EXPECT_TRUE(isEqual(defaults.objectForKey(u"name"), box(u"x")));
  EXPECT_FALSE(fs::exists(file));
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(saved()->count(), 1U);
  EXPECT_EQ(modeOf(file), 0600U);

  NSUserDefaults again(path);
  EXPECT_TRUE(isEqual(again.objectForKey(u"zoom"), box(2)));
  EXPECT_EQ(again.objectForKey(u"name"), nullptr);
  again.removeObjectForKey(u"zoom");
  ASSERT_TRUE(again.synchronize());
  EXPECT_EQ(saved()->count(), 0U);
}

TEST_F(NSUserDefaultsTest, KeepsCopiesAndRefusesWhatCannotBeSaved) {
  NSUserDefaults defaults(path);
  const auto inner = std::make_shared<NSMutableArray>();
  const auto list = std::make_shared<NSMutableArray>();
  const auto person = std::make_shared<NSMutableDictionary>();
  list->addObject(inner);
  list->addObject(person);
  defaults.setObject(list, u"list");
  inner->addObject(box(1));
  person->setObject(box(u"Ann"), u"name");
  for (const Ref<NSObject>& object : {Ref<NSObject>(NSNull::null()), Ref<NSObject>(arrayOf({NSNull::null()}))})
    EXPECT_THROW(defaults.setObject(object, u"list"), std::invalid_argument);
  EXPECT_THROW(defaults.setObject(box(1), u"\x01"), std::invalid_argument);
  EXPECT_TRUE(isEqual(defaults.objectForKey(u"list"), arrayOf({arrayOf({}), dictionaryOf({})})));
}

// What the file cannot hold is only lost with the process.
TEST_F(NSUserDefaultsTest, ValuesAreReadAsTheyWereSet) {
  NSUserDefaults defaults(path);
  const std::pair<Ref<NSObject>, Text> rows[] = {
      {box(NSDate::dateWithTimeIntervalSince1970(0.75)), u"1970-01-01 00:00:00 +0000"},
      {box(0.1F), u"0.10000000149011612"},
      {box(Text(u"a\0\v\xD800z", 5)), Text(u"a\0\v\xD800z", 5)}};
  for (const auto& [set, reread] : rows) {
    for (const Ref<NSObject>& value : {set, Ref<NSObject>(arrayOf({set}))}) {
      defaults.setObject(value, u"key");
      EXPECT_TRUE(isEqual(defaults.objectForKey(u"key"), value)) << utf8(description(value));
    }
    EXPECT_EQ(description(as<NSArray>(defaults.objectForKey(u"key"))->firstObject()), description(set));
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(description(as<NSArray>(saved()->objectForKey(u"key"))->firstObject()), reread);
  }
}

TEST_F(NSUserDefaultsTest, ObserversHearEachChangeOnce) {
  NSUserDefaults defaults(path);
  defaults.registerDefaults(*dictionaryOf({{u"a", box(1)}}));
  std::vector<Text> heard;
  std::size_t second = 0;
  defaults.addObserver([&](TextView key, const Ref<NSObject>& oldValue, const Ref<NSObject>& newValue) {
    heard.push_back(format(u"%@: %@ -> %@", key, oldValue, newValue));
    defaults.removeObserver(second);
    EXPECT_TRUE(isEqual(defaults.objectForKey(key), newValue));
  });
  second = defaults.addObserver([&](TextView, const auto&, const auto&) { heard.push_back(u"removed meanwhile"); });
  NSUserDefaultsController controller(defaults);
  controller.values()->setValueForKey(box(2), u"a");
  controller.setValueForKeyPath(nullptr, u"values.a");
  controller.setValueForKeyPath(box(u"new"), u"values.b");
  EXPECT_EQ(heard, (std::vector<Text>{u"a: 1 -> 2", u"a: 2 -> 1", u"b: (null) -> new"}));
  heard.clear();
  ASSERT_TRUE(controller.save(nullptr));
  EXPECT_TRUE(heard.empty());

  NSUserDefaults other(path);
  other.setObject(box(5), u"a");
  other.removeObjectForKey(u"b");
  ASSERT_TRUE(other.synchronize());
  ASSERT_TRUE(defaults.synchronize());
  EXPECT_EQ(heard, (std::vector<Text>{u"a: 1 -> 5", u"b: new -> (null)"}));
}

TEST_F(NSUserDefaultsTest, RegisteringIsHeardInSpiteOfExceptions) {
  NSUserDefaults defaults(path);
  defaults.setObject(box(1), u"set");
  std::vector<Text> heard;
  defaults.addObserver([](TextView, const auto&, const auto&) { throw std::domain_error("observer"); });
  defaults.addObserver([&](TextView key, const Ref<NSObject>& oldValue, const Ref<NSObject>& newValue) {
    heard.push_back(format(u"%@: %@ -> %@", key, oldValue, newValue));
  });
  EXPECT_THROW(defaults.registerDefaults(*dictionaryOf({{u"set", box(2)}, {u"a", box(3)}})), std::domain_error);
  EXPECT_THROW(defaults.registerDefaults(*dictionaryOf({{u"b", NSNull::null()}})), std::invalid_argument);
  EXPECT_THROW(defaults.removeObjectForKey(u"set"), std::domain_error);
  EXPECT_EQ(heard, (std::vector<Text>{u"a: (null) -> 3", u"set: 1 -> 2"}));
}

TEST_F(NSUserDefaultsTest, ValuesAreObservedThroughTheController) {
  struct Listener : NSObject {
    void observeValueForKeyPath(TextView keyPath, NSObject&, const NSKeyValueChange& change, void*) override {
      heard.push_back(format(u"%@: %@ -> %@", keyPath, change.oldValue(), change.newValue()));
    }
    std::vector<Text> heard;
  } listener;
  NSUserDefaults defaults(path);
  {
    NSUserDefaultsController controller(defaults), second(defaults);
    controller.addObserver(listener, u"values.zoom", NSKeyValueObservingOptionNew | NSKeyValueObservingOptionOld,
                           nullptr);
    second.setValueForKeyPath(box(1), u"values.zoom");
    second.setValueForKeyPath(box(2), u"values.other");
    defaults.setObject(nullptr, u"zoom");
  }
  defaults.setObject(box(4), u"zoom");
  EXPECT_EQ(listener.heard, (std::vector<Text>{u"values.zoom: <null> -> 1", u"values.zoom: 1 -> <null>"}));
}

TEST_F(NSUserDefaultsTest, DamagedFilesAreSetAsideAndNeverOverwritten) {
  const auto good = writePropertyList(*dictionaryOf({{u"key", box(Text(300, u'x'))}})).bytes;
  std::mt19937 random(20260131);
  CapturedSystemLog log;
  int keptAside = 0;
  for (int turn = 0; turn < 200; ++turn) {
    folder.clear();
    std::string damaged = good.substr(0, random() % (good.size() - 20));
    if (turn % 4 == 0) damaged = std::string(random() % 64 + 1, static_cast<char>(random()));
    if (turn == 1) damaged = "<plist><array/></plist>";
    if (turn == 2) damaged = "<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><dict/></plist>";
    write(damaged);
    NSUserDefaults defaults(path);
    defaults.setObject(box(1), u"fresh");
    EXPECT_EQ(bytes(), damaged);
    ASSERT_TRUE(defaults.synchronize());
    expectSaved(u"fresh", box(1));
    keptAside += folder.bytes("config/host.plist.damaged-1") == damaged;
    EXPECT_GE(log.take().size(), 2U);
  }
  EXPECT_EQ(keptAside, 200);
}

TEST_F(NSUserDefaultsTest, AFileThatCannotBeReadIsNotReplacedAndAHugeOneIsSetAside) {
  CapturedSystemLog log;
  fs::create_directories(file);
  NSUserDefaults defaults(path);
  EXPECT_EQ(log.take().size(), 1U);
  defaults.setObject(box(1), u"a");
  Ref<NSError> error;
  EXPECT_FALSE(defaults.synchronize(&error));
  EXPECT_TRUE(error && fs::is_directory(file));
  fs::remove(file);
  write("");
  fs::resize_file(file, 100U << 20U);
  EXPECT_TRUE(defaults.synchronize());
  expectSaved(u"a", box(1));
  EXPECT_EQ(fs::file_size(file + ".damaged-1"), 100U << 20U);
}

// Each system call of a save fails in turn, in every way: the old file or the new one is whole, and the caller is told.
TEST_F(NSUserDefaultsTest, NoFaultOfASaveLosesAnything) {
  CapturedSystemLog log;
  const Text before(5000, u'o'), after(6000, u'n');
  const auto state = [&] { return as<NSString>(saved()->objectForKey(u"state"))->text(); };
  int runs = 0;
  for (const Fault fault : {Fault::Error, Fault::Interrupted, Fault::Nothing, Fault::Short, Fault::Crash})
    for (const int errorNumber : {ENOSPC, EIO, EACCES, EROFS, EDQUOT}) {
      bool hadFault = true;
      for (std::size_t at = 0; hadFault && at < 500; ++at, ++runs) {
        folder.clear();
        {
          NSUserDefaults old(path);
          old.setObject(box(before), u"state");
          old.setObject(box(u"kept"), u"other");
          ASSERT_TRUE(old.synchronize());
        }
        FaultySystemCalls faulty(at, fault, errorNumber);
        NSUserDefaults defaults(path, faulty);
        defaults.setObject(box(after), u"state");
        const bool isSaved = defaults.synchronize();
        hadFault = faulty.calls().size() > at;
        SCOPED_TRACE(faulty.faultyCall());
        ASSERT_TRUE(saved());
        EXPECT_TRUE(state() == after || (!isSaved && state() == before));
        expectSaved(u"other", box(u"kept"));
        if (fault == Fault::Crash) continue;
        EXPECT_TRUE(defaults.synchronize()) << "what failed once cannot be tried again";
        EXPECT_EQ(state(), after);
      }
    }
  EXPECT_GT(runs, 300);
  std::cout << runs << " saves, with a fault at each system call in turn\n";
}

TEST_F(NSUserDefaultsTest, FourProcessesSaveAtOnce) {
  constexpr int rounds = 50;
  const bool isWell = runInProcesses(4, [&](int process) {
    NSUserDefaults defaults(path);
    for (int round = 0; round < rounds; ++round) {
      defaults.setObject(box(round), format(u"key-%d-%d", process, round));
      if (!defaults.synchronize()) _exit(1);
    }
  });
  EXPECT_TRUE(isWell);
  EXPECT_EQ(saved()->count(), 4U * rounds);
}

}  // namespace
