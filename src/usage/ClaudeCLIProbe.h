#pragma once

#include "base/SharedWork.h"
#include "usage/LiveQuotaProbing.h"
#include "usage/ProbeContext.h"

namespace morvo {

/// Runs `claude /usage` and reads its text. A slow command: it may take all of its 18 seconds.
class ClaudeCLIProbe final : public LiveQuotaProbing {
public:
  explicit ClaudeCLIProbe(ProbeContext context);

  [[nodiscard]] QString providerId() const override;
  [[nodiscard]] bool isAvailable() const override;
  [[nodiscard]] QCoro::Task<std::optional<LiveRateLimit>> probe(std::stop_token stop) override;

private:
  ProbeContext m_context;
  SharedWork<std::optional<QString>> m_locating;
};

} // namespace morvo
