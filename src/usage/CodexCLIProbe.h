#pragma once

#include "base/SharedWork.h"
#include "usage/LiveQuotaProbing.h"
#include "usage/ProbeContext.h"

namespace morvo {

/// Reads Codex's logs where the command `codex` is installed. It runs no command: its presence is
/// all that is asked.
class CodexCLIProbe final : public LiveQuotaProbing {
public:
  explicit CodexCLIProbe(ProbeContext context);

  [[nodiscard]] QString providerId() const override;
  [[nodiscard]] bool isAvailable() const override;
  [[nodiscard]] QCoro::Task<std::optional<LiveRateLimit>> probe(std::stop_token stop) override;

private:
  ProbeContext m_context;
  SharedWork<std::optional<LiveRateLimit>> m_reading;
};

} // namespace morvo
