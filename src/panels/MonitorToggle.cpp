#include "panels/MonitorToggle.h"

#include "platform/SettingKeys.h"

#include <array>

namespace morvo {

std::span<const MonitorToggle> MonitorToggles::all() {
  static const std::array toggles{
      MonitorToggle{SettingKeys::captureUsage, false, QStringLiteral("读本机用量"),
                    QStringLiteral("会递归读 ~/.claude、~/.codex 日志，可能弹文件夹权限。默认关；"
                                   "打开后才扫。与宠物无关。")},
      MonitorToggle{SettingKeys::preciseEvents, true, QStringLiteral("处理完成 / 需拍板事件"),
                    QStringLiteral("总闸。关后即使已写 Hook 也不反应、不通知")},
      MonitorToggle{SettingKeys::fleet, false, QStringLiteral("会话目录启发式（实验）"),
                    QStringLiteral("用 jsonl 是否在写猜「谁在跑」— 不可靠，默认关，"
                                   "且不进监控主界面")},
      MonitorToggle{SettingKeys::notifications, true, QStringLiteral("系统通知"),
                    QStringLiteral("仅任务完成 / 需你拍板；额度紧只显示在面板")},
  };
  return toggles;
}

} // namespace morvo
