#include "monitor/HookScript.h"

#include "base/AtomicFile.h"
#include "platform/MorvoHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace morvo::HookScript {
namespace {

constexpr AtomicFile::Options scriptOptions{.mode = 0755, .forceMode = true, .directoryMode = 0700};

// Both programs stand in single quotes of the shell, so no single quote may occur in them; and
// Python decodes its command line by the locale, so they are plain ASCII.
//
// -I -S: the hook runs in the user's project, where a file named json.py must not be taken for the
// library; and no site folder needs to be searched, which halves the start.
//
// Text that is no valid Unicode gets replacement characters, and a number that Python or a double
// does not hold becomes null, since a line that is not JSON would be an event lost.
constexpr const char *eventScriptHead = R"script(#!/bin/sh
# Morvo: 把 coding agent hook 的 stdin JSON 压成一行追加到 inbox，供 Morvo 消费。
exec /usr/bin/python3 -I -S -c '
import json, os, stat, sys
)script";

// The bytes of a line go to one unbuffered write on an appending descriptor: lines of hooks that
// end at the same moment do not mix, whatever their length. A piece that a full disk has cut off
// ends at the line feed put before the next line; who sees the middle of another one's write puts
// one as well, which makes an empty line, and that is none. The descriptor never waits, which
// matters for a pipe in the inbox's place.
constexpr const char *sharedProgram = R"script(
def finite(text):
    value = float(text)
    return value if value - value == 0 else None

def whole(text):
    try:
        return int(text)
    except ValueError:
        return None

def parsed(data):
    return json.loads(data.decode("utf-8-sig", "replace"), parse_float=finite, parse_int=whole,
                      parse_constant=lambda name: None)

def encoded(value):
    return (json.dumps(value, ensure_ascii=False) + "\n").encode("utf-8", "replace")

def appended(line):
    home = os.environ.get("HOME", "")
    if not os.path.isabs(home):
        raise OSError("HOME is not an absolute path")
    folder = os.path.join(home, ".morvo")
    os.makedirs(folder, 0o700, exist_ok=True)
    inbox = os.open(os.path.join(folder, "inbox.jsonl"),
                    os.O_RDWR | os.O_APPEND | os.O_CREAT | os.O_NONBLOCK, 0o600)
    status = os.fstat(inbox)
    if not stat.S_ISREG(status.st_mode):
        raise OSError("the inbox is not a regular file")
    if status.st_size > 0 and os.pread(inbox, 1, status.st_size - 1) not in (b"\n", b""):
        line = b"\n" + line
    while line:
        line = line[os.write(inbox, line):]
    return folder
)script";

constexpr const char *eventScriptBody = R"script(
try:
    event = parsed(sys.stdin.buffer.read())
    event["_src"] = sys.argv[1] if len(sys.argv) > 1 else "unknown"
    line = encoded(event)
except Exception:
    sys.exit(0)

try:
    appended(line)
except OSError as failure:
    sys.exit("morvo: %r" % failure)
' "$@"
)script";

constexpr const char *permissionScriptHead = R"script(#!/bin/sh
# Morvo: 把工具权限请求交给 Morvo 审批，等待决定文件；没人回答就静默退出，由 agent 自己询问。
# 答复的理由：只读，自动放行 / 你批准了 / 你拒绝了
exec /usr/bin/python3 -I -S -c '
import hashlib, json, os, stat, sys, time

READ_ONLY = ("Read", "Grep", "Glob", "LS", "NotebookRead", "WebFetch", "WebSearch", "TodoWrite")
ROUNDS = 180
PAUSE = 0.5
LONGEST_DECISION = 4096
)script";

constexpr const char *permissionScriptBody = R"script(
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
        file = os.open(path, os.O_RDONLY | os.O_NONBLOCK | os.O_NOFOLLOW)
        if not stat.S_ISREG(os.fstat(file).st_mode):
            return "ask"
        return json.loads(os.read(file, LONGEST_DECISION).decode("utf-8")).get("decision", "ask")
    except Exception:
        return "ask"

try:
    request = parsed(sys.stdin.buffer.read())
    tool = request.get("tool_name") or ""
    tool = tool if isinstance(tool, str) else str(tool)
    summary = summary_of(request.get("tool_input") or {})[:200]
except Exception:
    sys.exit(0)

if tool in READ_ONLY:
    out("allow", "\u53ea\u8bfb\uff0c\u81ea\u52a8\u653e\u884c")

# The digest only makes a name; some systems forbid MD5 for anything else.
request_id = hashlib.md5((str(time.time()) + tool).encode("utf-8", "replace"),
                         usedforsecurity=False).hexdigest()[:12]

try:
    folder = appended(encoded({"kind": "perm", "id": request_id, "tool": tool,
                               "summary": summary}))
    decisions = os.path.join(folder, "decisions")
    os.makedirs(decisions, 0o700, exist_ok=True)
except OSError as failure:
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

/// Whether the scripts can open the file as they do.
bool opensForAppending(const QString &path) {
  const int descriptor = ::open(QFile::encodeName(path).constData(),
                                O_RDWR | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) {
    return false;
  }
  ::close(descriptor);
  return true;
}

/// One name for a folder, whatever links lead to it.
QString canonical(const QString &path) {
  const QString found = QFileInfo(path).canonicalFilePath();
  return found.isEmpty() ? QDir::cleanPath(path) : found;
}

/// Agents hand the command to a shell unquoted; any other character would split or change it.
bool isPlainForShells(const QString &path) {
  return std::ranges::all_of(path, [](QChar character) {
    return character.isLetterOrNumber() || character.unicode() >= 0x80 ||
           QStringView(u"/._-+,@:%=").contains(character);
  });
}

/// What keeps an agent from running the script, whose content should be `text`.
QStringList obstaclesOf(const HookContext &context, const QString &script, const QByteArray &text) {
  QStringList found;
  const QFileInfo info(script);
  if (!info.exists()) {
    found << QStringLiteral("缺少钩子脚本 %1，请重新连接").arg(script);
  } else if (!info.isExecutable()) {
    found << QStringLiteral("钩子脚本 %1 没有执行权限，请重新连接").arg(script);
  } else if (context.files->read(script) != text) {
    found << QStringLiteral("钩子脚本 %1 和当前版本不一致，请重新连接").arg(script);
  }
  if (!isPlainForShells(script)) {
    found << QStringLiteral("路径 %1 含有空格或特殊字符，agent 的 shell 会把钩子命令拆开")
                 .arg(script);
  }
  return found;
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
  return obstaclesOf(context, MorvoHome::hookScript(context.home), eventScript());
}

QStringList permissionObstacles(const HookContext &context) {
  return obstaclesOf(context, MorvoHome::permissionScript(context.home), permissionScript());
}

QStringList inboxObstacles(const HookContext &context) {
  QStringList found;
  const QString inbox = MorvoHome::inbox(context.home);
  if (const QFileInfo info(inbox); info.exists() && !info.isFile()) {
    found << QStringLiteral("%1 不是普通文件，钩子写不进去").arg(inbox);
  } else if (info.exists() && !opensForAppending(inbox)) {
    found << QStringLiteral("%1 不可写，钩子写不进去").arg(inbox);
  }
  const auto home = context.environment.nonEmpty(QStringLiteral("HOME"));
  if (home && canonical(*home) != canonical(context.home.path)) {
    found << QStringLiteral("这里的 HOME 是 %1，和 %2 不同，用它启动的 agent 会把事件写到别处")
                 .arg(*home, context.home.path);
  }
  return found;
}

QByteArray eventScript() { return QByteArray(eventScriptHead) + sharedProgram + eventScriptBody; }

QByteArray permissionScript() {
  return QByteArray(permissionScriptHead) + sharedProgram + permissionScriptBody;
}

} // namespace morvo::HookScript
