#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

struct AVTXContext;

namespace BASS {

/// The last moments of what is heard, as a spectrum. It gathers samples for a second after each
/// question, and costs nothing when nobody asks.
///
/// *Thread*: take() by the output callback alone, which is never held up; magnitudes() by any
/// thread. A question may meet a few samples that are just being replaced: a picture bears it.
class HeardSpectrum {
  public:
    static constexpr std::size_t kFrames = 2048; ///< looked at together
    static constexpr std::size_t kBins = kFrames / 2;

    [[nodiscard]] bool isWanted() const {
        return m_framesWanted.load(std::memory_order_relaxed) > 0;
    }
    /// samples: left and right in turn; count: of both together.
    void take(const float* samples, std::size_t count);
    /// kBins amplitudes, 1 for a sine of full scale in both sides; bin n stands for the frequency
    /// n * rate / kFrames. False until enough was heard since the first question, or where there is
    /// no memory.
    bool magnitudes(float* bins);

  private:
    struct FreeTransform {
        void operator()(AVTXContext* context) const;
    };
    using Function = void (*)(AVTXContext*, void* out, void* in, std::ptrdiff_t stride);

    bool makeTransform();

    std::array<std::atomic<float>, kFrames> m_samples{};
    std::atomic<std::uint64_t> m_taken{0};
    std::atomic<int> m_framesWanted{0};

    std::mutex m_mutex; ///< guards what follows
    std::uint64_t m_firstTaken = 0;
    std::unique_ptr<AVTXContext, FreeTransform> m_transform;
    Function m_function = nullptr;
};

} // namespace BASS
