#pragma once

#include <QString>

namespace morvo {

/// One of the pets that the user can put in place of the present one.
struct PetChoice {
  QString id;
  QString name;
  bool isPresent = false;

  bool operator==(const PetChoice &) const = default;
};

} // namespace morvo
