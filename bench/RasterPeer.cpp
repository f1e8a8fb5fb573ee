#include <QBackingStore>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QTimer>
#include <QWindow>

#include <chrono>
#include <cstdio>
#include <vector>

// The yardstick of bench/desktop.py: a bare transparent window that shows a folder of frames,
// scaled once, 24 times a second, and does nothing else.

namespace {

constexpr int side = 280;
constexpr std::chrono::milliseconds frameTime(1000 / 24);

class Peer final : public QWindow {
public:
  explicit Peer(const QString &folder) : m_store(this) {
    setSurfaceType(QSurface::RasterSurface);
    QSurfaceFormat format;
    format.setAlphaBufferSize(8);
    setFormat(format);
    setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
             Qt::WindowDoesNotAcceptFocus);
    setGeometry(400, 300, side, side);
    const QDir frames(folder);
    for (const QString &name : frames.entryList({QStringLiteral("*.png")}, QDir::Files)) {
      m_frames.push_back(QImage(frames.filePath(name))
                             .scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, this, [this] { draw(); });
    m_timer.start(frameTime);
  }
  [[nodiscard]] bool hasFrames() const { return !m_frames.empty(); }

private:
  void draw() {
    if (!isExposed()) {
      return;
    }
    m_shown = (m_shown + 1) % m_frames.size();
    const QRect all(QPoint(), size());
    m_store.resize(size());
    m_store.beginPaint(all);
    QPainter painter(m_store.paintDevice());
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, m_frames[m_shown]);
    painter.end();
    m_store.endPaint();
    m_store.flush(all);
  }

  QBackingStore m_store;
  std::vector<QImage> m_frames;
  std::size_t m_shown = 0;
  QTimer m_timer;
};

} // namespace

int main(int argc, char **argv) {
  const QGuiApplication application(argc, argv);
  Peer peer(QCoreApplication::arguments().value(1));
  if (!peer.hasFrames()) {
    static_cast<void>(std::fputs("usage: RasterPeer FOLDER_OF_PNG_FRAMES\n", stderr));
    return 2;
  }
  peer.show();
  return QCoreApplication::exec();
}
