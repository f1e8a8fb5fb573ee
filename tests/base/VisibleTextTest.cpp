#include "base/VisibleText.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

struct Row {
  const char *name;
  QString text;
  QString seen;
};

class VisibleTextTest : public testing::TestWithParam<Row> {};

TEST_P(VisibleTextTest, ShowsWhatIsThere) {
  EXPECT_EQ(VisibleText::of(GetParam().text).toStdString(), GetParam().seen.toStdString());
}

Row same(const char *name, const QString &text) { return {name, text, text}; }

INSTANTIATE_TEST_SUITE_P(
    Rows, VisibleTextTest,
    testing::Values(
        same("Empty", {}), same("Command", QStringLiteral("rm -rf \"$HOME\"/* && echo '<b>'")),
        same("LinesAndTabs", QStringLiteral("a\n\tb")),
        same("Chinese", QStringLiteral("删除\u3000文件，好吗？")),
        same("Emoji", QStringLiteral("🦑")), same("CombiningMark", QStringLiteral("e\u0301")),
        same("FourMarks", QStringLiteral("e\u0301\u0302\u0303\u0304x\u0301")),
        Row{"PiledMarks", QStringLiteral("e\u0301\u0302\u0303\u0304\u0305\u0306"),
            QStringLiteral("e\u0301\u0302\u0303\u0304[U+0305][U+0306]")},
        Row{"PiledSpacingMarks", QStringLiteral("क\u0903\u0903\u0903\u0903\u0903"),
            QStringLiteral("क\u0903\u0903\u0903\u0903[U+0903]")},
        Row{"PiledThaiVowels", QStringLiteral("น\u0E33\u0E33\u0E33\u0E33\u0E33"),
            QStringLiteral("น\u0E33\u0E33\u0E33\u0E33[U+0E33]")},
        same("Hindi", QStringLiteral("नमस्ते दुनिया")), same("Thai", QStringLiteral("น้ำ")),
        Row{"MarksWithoutALetter", QStringLiteral("\u0301a\n\u0302\u202E\u0303"),
            QStringLiteral("[U+0301]a\n[U+0302][U+202E][U+0303]")},
        Row{"SymbolsWithoutALook", QString::fromUcs4(U"\uFFFC\U0001D159"),
            QStringLiteral("[U+FFFC][U+1D159]")},
        Row{"Hebrew", QStringLiteral("שלום"), QStringLiteral("\u200Eשלום\u200E")},
        Row{"WordsFromRightToLeft", QStringLiteral("אב /גד 12"),
            QStringLiteral("\u200Eאב\u200E /גד\u200E 12")},
        Row{"MarksWithinAWord", QStringLiteral("אָב x"), QStringLiteral("\u200Eאָב\u200E x")},
        Row{"OnlyLinesWithSuchWords", QStringLiteral("rm\nا\nls"),
            QStringLiteral("rm\n\u200Eا\u200E\nls")},
        Row{"Override", QStringLiteral("a\u202Eb\u202C"), QStringLiteral("a[U+202E]b[U+202C]")},
        Row{"Embeddings", QStringLiteral("\u202A\u202B\u202D"),
            QStringLiteral("[U+202A][U+202B][U+202D]")},
        Row{"Isolates", QStringLiteral("\u2066\u2067\u2068\u2069"),
            QStringLiteral("[U+2066][U+2067][U+2068][U+2069]")},
        Row{"Marks", QStringLiteral("\u200E\u200F\u061C"),
            QStringLiteral("[U+200E][U+200F][U+061C]")},
        Row{"ZeroWidth", QStringLiteral("\u200B\u200C\u200D\u2060\uFEFF\u00AD"),
            QStringLiteral("[U+200B][U+200C][U+200D][U+2060][U+FEFF][U+00AD]")},
        Row{"Separators", QStringLiteral("\u2028\u2029"), QStringLiteral("[U+2028][U+2029]")},
        Row{"Blanks", QStringLiteral("\u00A0\u2003\u202F"),
            QStringLiteral("[U+00A0][U+2003][U+202F]")},
        Row{"BlankLetters", QStringLiteral("\u3164\u115F\uFFA0\u2800\uFE0F\u034F"),
            QStringLiteral("[U+3164][U+115F][U+FFA0][U+2800][U+FE0F][U+034F]")},
        Row{"Controls", QString(QChar(u'\0')) + QStringLiteral("\r\u0007\u001B[2K\u007F\u0085"),
            QStringLiteral("[U+0000][U+000D][U+0007][U+001B][2K[U+007F][U+0085]")},
        Row{"LoneSurrogates", QString(QChar(0xD83D)) + u'x' + QChar(0xDE00) + QChar(0xD83D),
            QStringLiteral("[U+D83D]x[U+DE00][U+D83D]")},
        Row{"PrivateUse", QStringLiteral("\uE000"), QStringLiteral("[U+E000]")},
        Row{"Unassigned", QStringLiteral("\u0378\uFFFF"), QStringLiteral("[U+0378][U+FFFF]")},
        Row{"Tags", QString::fromUcs4(U"\U000E0041\U000E0100"),
            QStringLiteral("[U+E0041][U+E0100]")}),
    [](const auto &row) { return row.param.name; });

TEST(ShortenedTextTest, IsTheBeginningWithDotsWhereThereIsMore) {
  EXPECT_EQ(VisibleText::shortened(QStringLiteral("长长"), 2), QStringLiteral("长长"));
  EXPECT_EQ(VisibleText::shortened(QStringLiteral("长长的"), 2), QStringLiteral("长长……"));
  EXPECT_EQ(VisibleText::shortened({}, 2), QString());
}

TEST(ShortenedTextTest, CutsNoCharacterInTwo) {
  EXPECT_EQ(VisibleText::shortened(QStringLiteral("a🦑b"), 2), QStringLiteral("a……"));
  EXPECT_EQ(VisibleText::shortened(QStringLiteral("a🦑b"), 3), QStringLiteral("a🦑……"));
}

TEST(VisibleLineTest, ShowsLineFeedsAndTabsToo) {
  EXPECT_EQ(VisibleText::ofLine(QStringLiteral("Bash\n\t已批准\u202E")),
            QStringLiteral("Bash[U+000A][U+0009]已批准[U+202E]"));
}

} // namespace
} // namespace morvo
