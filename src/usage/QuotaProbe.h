#pragma once

#include "base/Environment.h"
#include "base/Scheduler.h"
#include "usage/LiveRateLimit.h"
#include "usage/ProbedQuota.h"

#include <QByteArray>
#include <QCoroTask>
#include <QHash>

#include <optional>
#include <stop_token>
#include <vector>

/// The figures of the outside command `caut`, which asks many providers at once.
namespace morvo::QuotaProbe {

/// Whether the command may be run: `MORVO_DISABLE_CAUT` is not "1".
[[nodiscard]] bool cautEnabled(const Environment &environment);

/// The path of the command: what `MORVO_CAUT_PATH` names, else the first in the folders of `PATH`.
/// Looks at the disk: not for the main thread.
[[nodiscard]] std::optional<QString> findCautBinary(const Environment &environment);

/// The folders in which it is sought: those of `PATH`; without one the usual places, but not the
/// home's own.
[[nodiscard]] QString cautFolders(const Environment &environment);

/// Runs the command at that path for up to 8 seconds. Empty on any failure, and when `stop` was
/// requested.
[[nodiscard]] QCoro::Task<std::vector<ProbedQuota>>
runCautUsage(Scheduler &scheduler, QString binary, Environment environment, std::stop_token stop);

/// The records in the command's output; those without a figure are left out. Takes any bytes.
[[nodiscard]] std::vector<ProbedQuota> parseCautUsageJSON(const QByteArray &output);

/// The agent's id for a provider's name in any of its spellings; a name that is not known is only
/// trimmed and lower-cased.
[[nodiscard]] QString normalizeProviderId(const QString &raw);

/// The records by agent; of several the one with the highest primary figure, the first of equals.
[[nodiscard]] QHash<QString, LiveRateLimit> cautLiveMap(const std::vector<ProbedQuota> &records);

} // namespace morvo::QuotaProbe
