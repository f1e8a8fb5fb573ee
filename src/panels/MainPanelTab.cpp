#include "panels/MainPanelTab.h"

namespace morvo::MainPanelTabs {

QString label(MainPanelTab tab) {
  switch (tab) {
  case MainPanelTab::chat:
    return QStringLiteral("对话");
  case MainPanelTab::monitor:
    return QStringLiteral("监控");
  case MainPanelTab::pet:
    return QStringLiteral("宠物");
  }
  return {};
}

QString symbol(MainPanelTab tab) {
  switch (tab) {
  case MainPanelTab::chat:
    return QStringLiteral("bubble.left.and.bubble.right");
  case MainPanelTab::monitor:
    return QStringLiteral("chart.bar");
  case MainPanelTab::pet:
    return QStringLiteral("pawprint");
  }
  return {};
}

MainPanelTab opening(const Environment &environment) {
  if (environment.isOne(QStringLiteral("MORVO_DRAWER"))) {
    return MainPanelTab::monitor;
  }
  const QString wanted =
      environment.value(QStringLiteral("MORVO_SHOW_PANEL")).value_or(QString()).toLower();
  if (wanted == u"drawer") {
    return MainPanelTab::monitor;
  }
  return wanted == u"pet" ? MainPanelTab::pet : MainPanelTab::chat;
}

} // namespace morvo::MainPanelTabs
