#include "platform/Setting.h"

#include "platform/SettingKeys.h"
#include "platform/qt/SettingsFile.h"
#include "support/MemorySettings.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <limits>

namespace morvo {
namespace {

/// One stored object and how each read sees it, in memory and out of a file, where every number and
/// every boolean has become a text.
struct Conversion {
  const char *name;
  QVariant stored;
  bool boolean;
  double dbl;
  int integer;
  QString str;
  int integerOutOfFile;
  QString strOutOfFile;
};

constexpr double absentNumber = 0.5;
const QString absentText = QStringLiteral("none");
constexpr int highest = std::numeric_limits<int>::max();
constexpr int lowest = std::numeric_limits<int>::min();

Conversion text(const char *name, const QString &stored, bool boolean, double dbl, int integer) {
  return {name, stored, boolean, dbl, integer, stored, integer, stored};
}

Conversion number(const char *name, const QVariant &stored, bool boolean, double dbl, int integer) {
  return {name, stored, boolean, dbl, integer, stored.toString(), integer, stored.toString()};
}

std::vector<Conversion> conversions() {
  const double infinity = std::numeric_limits<double>::infinity();
  const double none = absentNumber;
  return {
      {"True", true, true, none, 1, absentText, 0, QStringLiteral("true")},
      {"False", false, false, none, 0, absentText, 0, QStringLiteral("false")},
      number("One", 1, true, 1, 1),
      number("Zero", 0, false, 0, 0),
      number("MinusTwo", -2, true, -2, -2),
      number("Fraction", 2.75, true, 2.75, 2),
      number("NegativeFraction", -2.75, true, -2.75, -2),
      number("BeyondInteger", qlonglong{1} << 40, true, 1099511627776.0, highest),
      number("BelowInteger", -(qlonglong{1} << 40), true, -1099511627776.0, lowest),
      number("UnsignedLong", std::numeric_limits<qulonglong>::max(), true, 18446744073709551615.0,
             highest),
      {"Infinity", infinity, true, none, highest, QStringLiteral("inf"), 0, QStringLiteral("inf")},
      text("EmptyText", QString(), false, none, 0),
      text("Yes", QStringLiteral("YES"), true, none, 0),
      text("SmallYes", QStringLiteral("yellow"), true, none, 0),
      text("TrueText", QStringLiteral("true"), true, none, 0),
      text("CapitalTrueText", QStringLiteral("TRUE"), true, none, 0),
      text("No", QStringLiteral("NO"), false, none, 0),
      text("On", QStringLiteral("on"), false, none, 0),
      text("ZeroText", QStringLiteral("0"), false, 0, 0),
      text("OneText", QStringLiteral("1"), true, 1, 1),
      text("SpacedSevenWithTail", QStringLiteral(" +007x"), true, none, 7),
      text("SpacedNumber", QStringLiteral(" 12.5 "), true, 12.5, 12),
      text("ZerosThenYes", QStringLiteral("000y"), true, none, 0),
      text("MinusNine", QStringLiteral("-9"), true, -9, -9),
      text("TwoSigns", QStringLiteral("+-3"), false, none, 0),
      text("ZeroPointFive", QStringLiteral("0.5"), false, 0.5, 0),
      text("Exponent", QStringLiteral("1e3"), true, 1000, 1),
      text("HugeExponent", QStringLiteral("1e999"), true, none, 1),
      text("HugeDigits", QStringLiteral("99999999999999999999"), true, 1e20, highest),
      text("NegativeHugeDigits", QStringLiteral("-99999999999999999999"), true, -1e20, lowest),
      text("NanText", QStringLiteral("nan"), false, none, 0),
      text("InfText", QStringLiteral("inf"), false, none, 0),
      text("Comma", QStringLiteral("1,5"), true, none, 1),
      text("GroupSeparator", QStringLiteral("1,000"), true, none, 1),
      text("Hexadecimal", QStringLiteral("0x10"), false, none, 0),
      text("FullWidthDigit", QStringLiteral("１"), false, none, 0),
      text("ChineseText", QStringLiteral("是"), false, none, 0),
      {"List", QStringList{QStringLiteral("1"), QStringLiteral("2")}, false, none, 0, absentText, 0,
       absentText},
      {"Bytes", QByteArray("1"), false, none, 0, absentText, 0, absentText},
      {"Map", QVariantMap{{QStringLiteral("a"), 1}}, false, none, 0, absentText, 0, absentText},
  };
}

class ConversionTest : public testing::TestWithParam<Conversion> {
protected:
  static void expectCommonReads(const Setting &setting, const QString &key) {
    EXPECT_EQ(setting.boolean(key, true), GetParam().boolean);
    EXPECT_EQ(setting.boolean(key, false), GetParam().boolean);
    EXPECT_EQ(setting.dbl(key, absentNumber), GetParam().dbl);
  }
  QString m_key = QStringLiteral("morvo.set.fleet");
};

TEST_P(ConversionTest, InMemory) {
  test::MemorySettings store;
  store.set(m_key, GetParam().stored);
  const Setting setting(store, Environment{});
  expectCommonReads(setting, m_key);
  EXPECT_EQ(setting.integer(m_key, 33), GetParam().integer);
  EXPECT_EQ(setting.str(m_key, absentText), GetParam().str);
}

TEST_P(ConversionTest, OutOfAFile) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("settings.ini"));
  SettingsFile store(path);
  store.set(m_key, GetParam().stored);
  const Setting setting(store, Environment{});
  const bool isInfinity = GetParam().stored.typeId() == QMetaType::Double &&
                          !std::isfinite(GetParam().stored.toDouble());
  if (isInfinity) {
    // The file knows only its text, which begins with no digit.
    EXPECT_FALSE(setting.boolean(m_key, true));
    EXPECT_EQ(setting.dbl(m_key, absentNumber), absentNumber);
  } else {
    expectCommonReads(setting, m_key);
  }
  EXPECT_EQ(setting.integer(m_key, 33), GetParam().integerOutOfFile);
  EXPECT_EQ(setting.str(m_key, absentText), GetParam().strOutOfFile);
}

INSTANTIATE_TEST_SUITE_P(Stored, ConversionTest, testing::ValuesIn(conversions()),
                         [](const auto &info) { return std::string(info.param.name); });

class SettingTest : public testing::Test {
protected:
  [[nodiscard]] Setting under(const QString &variable, const QString &value) {
    return {m_store, Environment{{{variable, value}}}};
  }

  test::MemorySettings m_store;
  Setting m_setting{m_store, Environment{}};
  QString m_key = QStringLiteral("key");
};

TEST_F(SettingTest, AKeyThatWasNeverWrittenActsAsItsDefault) {
  EXPECT_TRUE(m_setting.boolean(m_key, true));
  EXPECT_FALSE(m_setting.boolean(m_key, false));
  EXPECT_EQ(m_setting.dbl(m_key, 7), 7);
  EXPECT_EQ(m_setting.integer(m_key, -3), -3);
  EXPECT_EQ(m_setting.str(m_key, QStringLiteral("x")), QStringLiteral("x"));
}

TEST_F(SettingTest, ARemovedKeyActsAsItsDefault) {
  m_store.set(m_key, false);
  m_store.remove(m_key);
  EXPECT_TRUE(m_setting.boolean(m_key, true));
}

TEST_F(SettingTest, AChangeActsAtTheNextRead) {
  m_store.set(SettingKeys::petScale, 1.0);
  EXPECT_EQ(m_setting.petScale(), 1.0);
  m_store.set(SettingKeys::petScale, 2.0);
  EXPECT_EQ(m_setting.petScale(), 2.0);
}

TEST_F(SettingTest, ANumberThatIsNoNumberIsTheDefault) {
  m_store.set(m_key, std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(m_setting.dbl(m_key, 4), 4);
  EXPECT_EQ(m_setting.integer(m_key, 4), 0);
}

TEST_F(SettingTest, NumbersHaveTheirDefaults) {
  EXPECT_EQ(m_setting.fontScale(), 1.0);
  EXPECT_EQ(m_setting.petOpacity(), 1.0);
  EXPECT_EQ(m_setting.petScale(), 1.4);
  EXPECT_EQ(m_setting.bubbleDwell(), 6);
  EXPECT_EQ(m_setting.proactiveMinInterval(), 45);
  EXPECT_EQ(m_setting.proactiveDedupWindow(), 180);
  EXPECT_EQ(m_setting.captureSeconds(), 60);
}

TEST_F(SettingTest, EachNumberIsReadUnderItsName) {
  const std::vector<std::pair<QString, double (Setting::*)() const>> numbers{
      {QStringLiteral("morvo.set.fontScale"), &Setting::fontScale},
      {QStringLiteral("morvo.set.petOpacity"), &Setting::petOpacity},
      {QStringLiteral("morvo.pet.scale"), &Setting::petScale},
      {QStringLiteral("morvo.set.bubbleDwell"), &Setting::bubbleDwell},
      {QStringLiteral("morvo.set.proactiveMinInterval"), &Setting::proactiveMinInterval},
      {QStringLiteral("morvo.set.proactiveDedupWindow"), &Setting::proactiveDedupWindow}};
  for (const auto &[name, read] : numbers) {
    const double standard = (m_setting.*read)();
    m_store.set(name, -1.0);
    EXPECT_LT((m_setting.*read)(), standard) << name.toStdString();
  }
  m_store.set(QStringLiteral("morvo.set.captureSeconds"), 7);
  EXPECT_EQ(m_setting.captureSeconds(), 7);
}

struct Clamp {
  const char *name;
  QString key;
  double (Setting::*read)() const;
  double stored;
  double expected;
};

class ClampTest : public testing::TestWithParam<Clamp> {};

TEST_P(ClampTest, KeepsTheNumberInItsRange) {
  test::MemorySettings store;
  store.set(GetParam().key, GetParam().stored);
  const Setting setting(store, Environment{});
  EXPECT_EQ((setting.*GetParam().read)(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Stored, ClampTest,
    testing::Values(
        Clamp{"BubbleDwellAbove", SettingKeys::bubbleDwell, &Setting::bubbleDwell, 100, 20},
        Clamp{"BubbleDwellBelow", SettingKeys::bubbleDwell, &Setting::bubbleDwell, 0, 2},
        Clamp{"BubbleDwellInside", SettingKeys::bubbleDwell, &Setting::bubbleDwell, 7.5, 7.5},
        Clamp{"MinIntervalBelow", SettingKeys::proactiveMinInterval, &Setting::proactiveMinInterval,
              1, 5},
        Clamp{"MinIntervalHasNoTop", SettingKeys::proactiveMinInterval,
              &Setting::proactiveMinInterval, 1e6, 1e6},
        Clamp{"DedupBelow", SettingKeys::proactiveDedupWindow, &Setting::proactiveDedupWindow, -1,
              30},
        Clamp{"DedupHasNoTop", SettingKeys::proactiveDedupWindow, &Setting::proactiveDedupWindow,
              1e6, 1e6},
        Clamp{"FontScaleAbove", SettingKeys::fontScale, &Setting::fontScale, 3, 1.4},
        Clamp{"FontScaleBelow", SettingKeys::fontScale, &Setting::fontScale, 0.1, 0.85},
        Clamp{"PetOpacityAbove", SettingKeys::petOpacity, &Setting::petOpacity, 3, 1.0},
        Clamp{"PetOpacityBelow", SettingKeys::petOpacity, &Setting::petOpacity, 0, 0.3},
        Clamp{"PetScaleAbove", SettingKeys::petScale, &Setting::petScale, 9, 2.4},
        Clamp{"PetScaleBelow", SettingKeys::petScale, &Setting::petScale, -9, 0.8}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(SettingTest, CaptureSecondsBelowOneAreSixty) {
  for (const int stored : {0, -5}) {
    m_store.set(SettingKeys::captureSeconds, stored);
    EXPECT_EQ(m_setting.captureSeconds(), 60);
  }
  m_store.set(SettingKeys::captureSeconds, 1);
  EXPECT_EQ(m_setting.captureSeconds(), 1);
  m_store.set(SettingKeys::captureSeconds, QStringLiteral("soon"));
  EXPECT_EQ(m_setting.captureSeconds(), 60);
}

TEST_F(SettingTest, AFontScaleInTheEnvironmentIsTakenAsItIs) {
  m_store.set(SettingKeys::fontScale, 1.2);
  EXPECT_EQ(under(QStringLiteral("MORVO_FONTSCALE"), QStringLiteral("3")).fontScale(), 3);
  EXPECT_EQ(under(QStringLiteral("MORVO_FONTSCALE"), QStringLiteral("-1.5")).fontScale(), -1.5);
}

TEST_F(SettingTest, APetOpacityInTheEnvironmentIsTakenAsItIs) {
  m_store.set(SettingKeys::petOpacity, 0.5);
  EXPECT_EQ(under(QStringLiteral("MORVO_PETOPACITY"), QStringLiteral("0")).petOpacity(), 0);
}

TEST_F(SettingTest, AnEnvironmentTextThatIsNotWhollyANumberLeavesTheSetting) {
  m_store.set(SettingKeys::fontScale, 1.2);
  for (const QString &text :
       {QString(), QStringLiteral("2x"), QStringLiteral(" 2"), QStringLiteral("2 "),
        QStringLiteral("big"), QStringLiteral("nan"), QStringLiteral("1,000")}) {
    EXPECT_EQ(under(QStringLiteral("MORVO_FONTSCALE"), text).fontScale(), 1.2)
        << text.toStdString();
  }
}

} // namespace
} // namespace morvo
