#pragma once

#include "app/PetStore.h"

#include <QQmlEngine>

namespace morvo {

/// The store's name and type in QML; the program hands its only instance to each panel.
struct PetStoreElement {
  Q_GADGET
  QML_FOREIGN(morvo::PetStore)
  QML_NAMED_ELEMENT(PetStore)
  QML_UNCREATABLE("The program owns the store.")
};

} // namespace morvo
