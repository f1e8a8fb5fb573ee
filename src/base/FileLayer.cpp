#include "base/FileLayer.h"

#include <system_error>

namespace morvo {

QString FileError::message() const {
  return operation + u' ' + path + QStringLiteral(": ") +
         QString::fromStdString(std::generic_category().message(code));
}

} // namespace morvo
