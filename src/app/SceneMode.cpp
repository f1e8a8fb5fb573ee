#include "app/SceneMode.h"

#include "app/StillClock.h"
#include "base/Diagnostics.h"
#include "base/RandomSource.h"
#include "pet/MorvoTheme.h"
#include "pet/PetScene.h"
#include "pet/ScenePainter.h"

#include <QImage>
#include <QPainter>

namespace morvo::SceneMode {
namespace {

const QString tag = QStringLiteral("SCENE");
/// Moods that are actions as well.
const QStringList performedMoods{QStringLiteral("celebrate"), QStringLiteral("alert")};

QImage painted(ScenePainter &painter, const PetScene &scene) {
  QImage image(stageSize, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter onImage(&image);
  painter.paint(onImage, scene, image.rect(), 1);
  return image;
}

} // namespace

void run(const QStringList &fields, const PetFiles &files, const Setting &setting) {
  const QString &mood = fields.at(0);
  const QString &output = fields.at(1);
  StillClock clock;
  SeededRandomSource random(0);
  MorvoSprites sprites(files);
  PetScene scene(stageSize, files, sprites, setting, clock, random);
  if (const auto persona = setting.environment().nonEmpty(QStringLiteral("MORVO_PERSONA_ID"))) {
    scene.setPersona(*persona);
  }
  scene.setTheme(MorvoTheme::current(setting).color);
  scene.setMood(mood);
  scene.present();
  if (performedMoods.contains(mood)) {
    scene.react(mood);
  }
  bool isNumber = false;
  const double time = fields.value(2).toDouble(&isNumber);
  if (isNumber) {
    scene.update(time);
  }
  ScenePainter painter;
  const QImage picture = painted(painter, scene);
  if (picture.isNull()) {
    Diagnostics::line(tag, u"render failed");
    return;
  }
  // Whoever asked for the picture looks at the file; there is nobody else to tell.
  static_cast<void>(picture.save(output, "PNG"));
  Diagnostics::line(tag, QStringLiteral("wrote ") + output);
}

} // namespace morvo::SceneMode
