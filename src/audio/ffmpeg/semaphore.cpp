#include "audio/ffmpeg/semaphore.h"

#include <SDL_mutex.h>

namespace BASS {

Semaphore::Semaphore() : m_handle(SDL_CreateSemaphore(0)) {}

Semaphore::~Semaphore() {
    SDL_DestroySemaphore(m_handle);
}

void Semaphore::post() {
    SDL_SemPost(m_handle);
}

void Semaphore::wait() {
    SDL_SemWait(m_handle);
}

} // namespace BASS
