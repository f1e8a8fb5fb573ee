#include "panels/ActSection.h"
#include "panels/ApprovalPrompt.h"
#include "panels/AttentionSection.h"
#include "panels/ChatSection.h"
#include "panels/HeaderSection.h"
#include "panels/LoadsSection.h"
#include "panels/MonitorSection.h"
#include "panels/PersonasSection.h"
#include "panels/TabsSection.h"
#include "panels/VitalsSection.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

namespace morvo {
namespace {

struct FixedText {
  std::function<std::unique_ptr<QObject>()> section;
  const char *name;
  const char16_t *text;
};

template <typename Section> FixedText of(const char *name, const char16_t *text) {
  return {[] { return std::make_unique<Section>(); }, name, text};
}

std::string nameOf(const testing::TestParamInfo<FixedText> &info) {
  const QString section = QString::fromLatin1(info.param.section()->metaObject()->className());
  return (section.section(u':', -1) + u'_' + QString::fromLatin1(info.param.name)).toStdString();
}

class SectionTextsTest : public testing::TestWithParam<FixedText> {};

TEST_P(SectionTextsTest, IsThereBeforeAnyStore) {
  EXPECT_EQ(GetParam().section()->property(GetParam().name),
            QVariant(QString::fromUtf16(GetParam().text)));
}

INSTANTIATE_TEST_SUITE_P(
    Fixed, SectionTextsTest,
    testing::Values(
        of<ActSection>("label", u"Act 权限守门（改动必问你）"),
        of<ActSection>("showPetLabel", u"显示桌面宠"),
        of<ActSection>("petHint", u"摸摸 / 喂食 / 动作 → 右键桌面悬浮宠"),
        of<ApprovalPrompt>("rejectLabel", u"拒绝"), of<ApprovalPrompt>("approveLabel", u"批准"),
        of<AttentionSection>("title", u"现在"), of<ChatSection>("timelineName", u"对话"),
        of<ChatSection>("invitation", u"跟它说点什么吧，它会一直陪着你写代码。"),
        of<ChatSection>("sendHelp", u"发送"),
        of<HeaderSection>("settingsHelp", u"打开独立设置窗口"), of<LoadsSection>("title", u"额度"),
        of<LoadsSection>("caption", u"5 小时窗与一周窗。有官方百分比就显示进度条；下方 token "
                                    u"为本机日志累计。"),
        of<LoadsSection>("emptyLine", u"还没读到用量。在设置里扫描 Claude / Codex / Cursor，"
                                      u"或先用一会儿对应工具。"),
        of<MonitorSection>("reloadLabel", u"刷新"), of<PersonasSection>("title", u"形象"),
        of<PersonasSection>("newPetLabel", u"＋ 新建自定义宠物…"),
        of<PersonasSection>("manageLabel", u"管理我的宠物…"),
        of<PersonasSection>("namePlaceholder", u"名字"), of<PersonasSection>("saveLabel", u"保存"),
        of<PersonasSection>("currentBadge", u"当前"), of<PersonasSection>("chooseLabel", u"选中"),
        of<PersonasSection>("renameHelp", u"改名"), of<PersonasSection>("removeHelp", u"删除"),
        of<PersonasSection>("fillHelp", u"只生成缺失动作，已有完整帧的组会跳过"),
        of<TabsSection>("panelName", u"MorvoBar"), of<VitalsSection>("title", u"状态"),
        of<VitalsSection>("note", u"与 coding 无关"),
        of<VitalsSection>("hint", u"摸摸、喂食、聊聊天会改变状态。")),
    nameOf);

TEST(PanelFilesTest, NoneOfThemHoldsAText) {
  const QRegularExpression worded(QStringLiteral(
      R"re(\b(text|help|title|placeholderText|Accessible\.(name|description)): *"[^"])re"));
  int files = 0;
  QDirIterator folder(QStringLiteral(":/qt/qml/Morvo/Panels"), {QStringLiteral("*.qml")});
  while (folder.hasNext()) {
    QFile file(folder.next());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString content = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(std::ranges::all_of(content, [](QChar each) { return each < QChar(0x7f); }))
        << file.fileName().toStdString();
    EXPECT_FALSE(worded.match(content).hasMatch()) << file.fileName().toStdString();
    ++files;
  }
  EXPECT_GT(files, 10);
}

} // namespace
} // namespace morvo
