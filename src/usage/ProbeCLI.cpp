#include "usage/ProbeCLI.h"

#include <QFileInfo>

#include <utility>

namespace morvo::ProbeCLI {
namespace {

const QString standardFolders = QStringLiteral("/usr/local/bin:/opt/homebrew/bin:/usr/bin:");

/// A table of percentages is a few kilobytes.
constexpr qsizetype longestOutput = qsizetype{1} << 20U;

} // namespace

bool enabled(const Environment &environment) {
  return !environment.isOne(QStringLiteral("MORVO_DISABLE_CLI_PROBES"));
}

std::optional<QString> executable(const QString &path) {
  const QFileInfo file(path);
  return file.isFile() && file.isExecutable() ? std::optional(file.absoluteFilePath())
                                              : std::nullopt;
}

std::optional<QString> firstExecutable(const QString &name, const QString &folders) {
  // An empty place is the root folder.
  const QStringList places = folders.split(u':');
  for (const QString &folder : places) {
    if (auto found = executable(folder + u'/' + name)) {
      return found;
    }
  }
  return std::nullopt;
}

std::optional<QString> locate(const QString &name, const Environment &environment,
                              const HomeFolder &home) {
  const auto named =
      environment.nonEmpty(QStringLiteral("MORVO_") + name.toUpper() + QStringLiteral("_PATH"));
  if (auto found = named ? executable(*named) : std::nullopt) {
    return found;
  }
  return firstExecutable(name, foldersOf(environment, home));
}

QString foldersOf(const Environment &environment, const HomeFolder &home) {
  return environment.value(QStringLiteral("PATH"))
      .value_or(standardFolders + home.file(QStringLiteral(".local/bin")));
}

QCoro::Task<std::optional<ChildProcess::Output>> output(Scheduler &scheduler, Run command,
                                                        std::stop_token stop) {
  ChildProcess::Command child;
  child.program = command.executable;
  child.arguments = command.arguments;
  child.environment = command.environment;
  child.workingDirectory = QStringLiteral("/");
  child.deadline = command.timeout;
  child.outputLimit = longestOutput;
  child.mayCrash = true;
  auto result = co_await ChildProcess::run(scheduler, child, stop);
  co_return result && *result ? std::optional(**std::move(result)) : std::nullopt;
}

QCoro::Task<std::optional<QString>> run(Scheduler &scheduler, Run command, std::stop_token stop) {
  const auto written = co_await output(scheduler, command, stop);
  if (!written) {
    co_return std::nullopt;
  }
  const QString text = QString::fromUtf8(
      written->standardOutput.isEmpty() ? written->standardError : written->standardOutput);
  co_return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace morvo::ProbeCLI
