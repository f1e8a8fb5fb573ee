#include "monitor/HookScript.h"

#include "base/AtomicFile.h"
#include "platform/MorvoHome.h"

#include <QFileInfo>

#include <algorithm>

namespace morvo::HookScript {
namespace {

constexpr AtomicFile::Options scriptOptions{.mode = 0755, .forceMode = true, .directoryMode = 0700};

// Both programs stand in single quotes of the shell, so no single quote may occur in them; and
// Python decodes its command line by the locale, so they are plain ASCII.
//
// -I -S: the hook runs in the user's project, where a file named json.py must not be taken for the
// library; and no site folder needs to be searched, which halves the start.
//
// The bytes of a line go to one unbuffered write on an appending descriptor: lines of hooks that
// end at the same moment do not mix, whatever their length. Text that is no valid Unicode gets
// replacement characters, and a number beyond a double becomes null, since a line that is not JSON
// would be an event lost.
constexpr const char *eventScriptText = R"script(#!/bin/sh
# Morvo: 把 coding agent hook 的 stdin JSON 压成一行追加到 inbox，供 Morvo 消费。
exec /usr/bin/python3 -I -S -c '
import json, os, sys

def finite(text):
    value = float(text)
    return value if value - value == 0 else None

try:
    text = sys.stdin.buffer.read().decode("utf-8-sig", "replace")
    event = json.loads(text, parse_float=finite, parse_constant=lambda name: None)
    event["_src"] = sys.argv[1] if len(sys.argv) > 1 else "unknown"
    line = (json.dumps(event, ensure_ascii=False) + "\n").encode("utf-8", "replace")
except Exception:
    sys.exit(0)

try:
    folder = os.path.join(os.environ["HOME"], ".morvo")
    os.makedirs(folder, 0o700, exist_ok=True)
    inbox = os.open(os.path.join(folder, "inbox.jsonl"),
                    os.O_WRONLY | os.O_APPEND | os.O_CREAT, 0o600)
    while line:
        line = line[os.write(inbox, line):]
except (KeyError, OSError) as failure:
    sys.exit("morvo: %r" % failure)
' "$@"
)script";

constexpr const char *permissionScriptText = R"script(#!/bin/sh
# Morvo: 把工具权限请求交给 Morvo 审批，等待决定文件；没人回答就静默退出，由 agent 自己询问。
# 答复的理由：只读，自动放行 / 你批准了 / 你拒绝了
exec /usr/bin/python3 -I -S -c '
import hashlib, json, os, sys, time

READ_ONLY = ("Read", "Grep", "Glob", "LS", "NotebookRead", "WebFetch", "WebSearch", "TodoWrite")
ROUNDS = 180
PAUSE = 0.5

def encoded(value):
    return (json.dumps(value, ensure_ascii=False) + "\n").encode("utf-8", "replace")

def out(decision, reason):
    sys.stdout.buffer.write(encoded({"hookSpecificOutput": {
        "hookEventName": "PreToolUse",
        "permissionDecision": decision,
        "permissionDecisionReason": reason}}))
    sys.stdout.buffer.flush()
    sys.exit(0)

def summary_of(tool_input):
    if isinstance(tool_input, dict):
        stated = tool_input.get("command") or tool_input.get("file_path")
        if stated:
            return str(stated)
    return json.dumps(tool_input, ensure_ascii=False)[:140]

def decision_in(path):
    try:
        with open(path, encoding="utf-8") as file:
            return json.load(file).get("decision", "ask")
    except Exception:
        return "ask"

try:
    request = json.loads(sys.stdin.buffer.read().decode("utf-8-sig", "replace"))
    tool = request.get("tool_name") or ""
    tool = tool if isinstance(tool, str) else str(tool)
    summary = summary_of(request.get("tool_input") or {})[:200]
except Exception:
    sys.exit(0)

if tool in READ_ONLY:
    out("allow", "\u53ea\u8bfb\uff0c\u81ea\u52a8\u653e\u884c")

request_id = hashlib.md5((str(time.time()) + tool).encode("utf-8", "replace")).hexdigest()[:12]
line = encoded({"kind": "perm", "id": request_id, "tool": tool, "summary": summary})

try:
    folder = os.path.join(os.environ["HOME"], ".morvo")
    decisions = os.path.join(folder, "decisions")
    os.makedirs(folder, 0o700, exist_ok=True)
    inbox = os.open(os.path.join(folder, "inbox.jsonl"),
                    os.O_WRONLY | os.O_APPEND | os.O_CREAT, 0o600)
    while line:
        line = line[os.write(inbox, line):]
    os.makedirs(decisions, 0o700, exist_ok=True)
except (KeyError, OSError) as failure:
    sys.exit("morvo: %r" % failure)

path = os.path.join(decisions, request_id + ".json")
for attempt in range(ROUNDS):
    if os.path.exists(path):
        decision = decision_in(path)
        try:
            os.remove(path)
        except OSError:
            pass
        if decision == "allow":
            out("allow", "\u4f60\u6279\u51c6\u4e86")
        if decision == "deny":
            out("deny", "\u4f60\u62d2\u7edd\u4e86")
        break
    time.sleep(PAUSE)
' "$@"
)script";

std::expected<void, HookError> writeScript(FileLayer &files, const QString &path,
                                           const QByteArray &text) {
  if (auto written = AtomicFile::write(files, path, text, scriptOptions); !written) {
    return std::unexpected(HookError{HookError::Kind::scriptNotWritten, path, written.error()});
  }
  return {};
}

/// Agents hand the command to a shell unquoted; any other character would split or change it.
bool isPlainForShells(const QString &path) {
  return std::ranges::all_of(path, [](QChar character) {
    return character.isLetterOrNumber() || character.unicode() >= 0x80 ||
           QStringView(u"/._-+,@:%=").contains(character);
  });
}

} // namespace

std::expected<QString, HookError> install(const HookContext &context) {
  MorvoHome::ensure(context.home);
  QString hook = MorvoHome::hookScript(context.home);
  if (auto written = writeScript(*context.files, hook, eventScript()); !written) {
    return std::unexpected(written.error());
  }
  if (auto written = writeScript(*context.files, MorvoHome::permissionScript(context.home),
                                 permissionScript());
      !written) {
    return std::unexpected(written.error());
  }
  return hook;
}

bool alreadyInstalled(const HomeFolder &home) {
  return QFileInfo::exists(MorvoHome::hookScript(home));
}

QString command(const QString &scriptPath, const QString &source) {
  return scriptPath + u' ' + source;
}

QStringList interpreterObstacles(const HookContext &context) {
  if (QFileInfo(context.python).isExecutable()) {
    return {};
  }
  return {QStringLiteral("没有可执行的 %1，钩子脚本跑不起来").arg(context.python)};
}

QStringList scriptObstacles(const HookContext &context) {
  QStringList found;
  const QString script = MorvoHome::hookScript(context.home);
  const QFileInfo info(script);
  if (!info.exists()) {
    found << QStringLiteral("缺少钩子脚本 %1，请重新连接").arg(script);
  } else if (!info.isExecutable()) {
    found << QStringLiteral("钩子脚本 %1 没有执行权限，请重新连接").arg(script);
  } else if (context.files->read(script) != eventScript()) {
    found << QStringLiteral("钩子脚本 %1 和当前版本不一致，请重新连接").arg(script);
  }
  if (!isPlainForShells(script)) {
    found << QStringLiteral("路径 %1 含有空格或特殊字符，agent 的 shell 会把钩子命令拆开")
                 .arg(script);
  }
  return found;
}

QByteArray eventScript() { return {eventScriptText}; }

QByteArray permissionScript() { return {permissionScriptText}; }

} // namespace morvo::HookScript
