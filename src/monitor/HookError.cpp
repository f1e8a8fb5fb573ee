#include "monitor/HookError.h"

#include <system_error>

namespace morvo {
namespace {

QString sentence(HookError::Kind kind) {
  switch (kind) {
  case HookError::Kind::scriptNotWritten:
    return QStringLiteral("没能写入钩子脚本 %1");
  case HookError::Kind::fileUnreadable:
    return QStringLiteral("读不了 %1，没有改动它");
  case HookError::Kind::fileNotUtf8:
    return QStringLiteral("%1 里有不是 UTF-8 的文字，没有改动它");
  case HookError::Kind::fileTooDeep:
    return QStringLiteral("%1 嵌套得太深，没有改动它");
  case HookError::Kind::configConflict:
    return QStringLiteral("%1 的写法这里看不懂，自动开启可能弄坏它，所以没有改动；"
                          "请手动在 [features] 一节里写一行 hooks = true");
  case HookError::Kind::fileBusy:
    return QStringLiteral("%1 正被别的程序不停地改写，没有改动它，请稍后再试");
  case HookError::Kind::fileNotWritten:
    return QStringLiteral("没能写入 %1");
  }
  Q_UNREACHABLE();
}

} // namespace

QString HookError::message() const {
  QString text = sentence(kind).arg(path);
  if (!cause) {
    return text;
  }
  const auto reason = QString::fromStdString(std::generic_category().message(cause->code));
  return text + QStringLiteral("（%1）").arg(reason);
}

} // namespace morvo
