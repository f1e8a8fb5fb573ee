#pragma once

#include "base/Scheduler.h"
#include "base/WorkerPool.h"

#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace morvo {

/// Work of one kind on a pool's threads, of which never more than one piece runs: who asks
/// meanwhile waits for that one. Nobody waits for longer than `patience`, so that a disk that never
/// answers keeps one thread and no one else; the work goes on, and who asks once it is done has it
/// done anew.
///
/// Belongs to the pool's thread. May be destroyed while somebody waits, who then waits on.
template <typename Value> class SharedWork {
public:
  /// The references must outlive everyone who waits.
  SharedWork(WorkerPool &pool, Scheduler &scheduler, Duration patience)
      : m_pool(&pool), m_scheduler(&scheduler), m_patience(patience) {}

  /// What the work returned; nothing when that took too long, and as `WorkerPool::run` has it.
  template <typename Work> [[nodiscard]] QCoro::Task<std::optional<Value>> run(Work &work) {
    std::shared_ptr<Piece> piece = *m_running;
    if (!piece) {
      piece = std::make_shared<Piece>();
      *m_running = piece;
      finish<std::remove_const_t<Work>>(m_pool, work, piece, m_running);
    }
    return wait(m_scheduler, m_patience, piece);
  }

private:
  struct Piece {
    std::optional<Value> value;
    std::stop_source done;
  };
  /// The piece that runs, if any; outlives this object for as long as it does.
  using Running = std::shared_ptr<std::shared_ptr<Piece>>;

  template <typename Work>
  static QCoro::Task<> finish(WorkerPool *pool, Work work, std::shared_ptr<Piece> piece,
                              Running running) {
    piece->value = co_await pool->run(work);
    running->reset();
    const std::stop_source done = piece->done;
    piece.reset();
    done.request_stop();
  }

  static QCoro::Task<std::optional<Value>> wait(Scheduler *scheduler, Duration patience,
                                                std::shared_ptr<Piece> piece) {
    co_await scheduler->sleep(patience, piece->done.get_token());
    // The last one takes it.
    co_return piece.use_count() == 1 ? std::move(piece->value) : piece->value;
  }

  WorkerPool *m_pool;
  Scheduler *m_scheduler;
  Duration m_patience;
  Running m_running = std::make_shared<std::shared_ptr<Piece>>();
};

} // namespace morvo
