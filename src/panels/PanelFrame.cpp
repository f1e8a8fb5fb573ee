#include "panels/PanelFrame.h"

#include <algorithm>

namespace morvo::PanelFrame {
namespace {

constexpr int greatestHeight = 580;
/// Left free above and below.
constexpr int spare = 120;

} // namespace

int height(std::optional<int> visibleHeight) {
  return visibleHeight ? std::max(0, std::min(*visibleHeight - spare, greatestHeight))
                       : greatestHeight;
}

} // namespace morvo::PanelFrame
