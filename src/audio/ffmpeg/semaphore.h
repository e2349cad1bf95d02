#pragma once

struct SDL_semaphore;

namespace BASS {

/// A counting semaphore whose post() may be called from the output callback: it takes no lock and
/// allocates nothing. Any thread.
class Semaphore {
  public:
    Semaphore();
    ~Semaphore();
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;

    void post();
    void wait();

  private:
    SDL_semaphore* m_handle;
};

} // namespace BASS
