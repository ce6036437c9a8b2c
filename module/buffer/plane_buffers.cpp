#include <cstdint>
#include <cstdlib>

#include "module/buffer/buffer.h"
#include "module/contract/numbers.h"
#include "module/state/plane.h"
#include "module/state/routine_pointers.h"

namespace scroll2d {
namespace {

// A buffer of that size, or null without memory.
std::uint8_t* allocate_buffer(BufferSize size) {
    return size.fits ? static_cast<std::uint8_t*>(std::malloc(static_cast<std::size_t>(size.bytes)))
                     : nullptr;
}

// No product exceeds the buffer's size, which has been allocated.
void own_buffers(ScrollRecord& r) {
    r.ring_size = r.width * r.height;
    r.pitch = r.width * routine_pixel_bytes;
    r.last_row_offset = (r.height - 1) * r.width;
    r.last_row_bytes = (r.height - 1) * r.pitch;
    r.made_width = r.width;
    r.made_height = r.height;
    r.made_pixel_bytes = routine_pixel_bytes;
    r.shortage_reported = 0;
}

}  // namespace

// Every scroll that has a buffer at all had `planes` planes when they were made, so a first buffer that fits
// vouches for the second.
bool buffers_fit(const ScrollRecord& r) {
    return r.buffer1 != nullptr && r.made_width == r.width && r.made_height == r.height &&
           r.made_pixel_bytes == routine_pixel_bytes && r.width >= 1 && r.height >= 1;
}

BufferSize buffer_size(const ScrollRecord& r) {
    // Below 2^63: both factors are below 2^31 + 1.
    const std::int64_t pixels = (std::int64_t{r.height} + 1) * r.width;
    const bool fits = pixels <= int32_max / routine_pixel_bytes;
    const std::uint64_t bytes =
        static_cast<std::uint64_t>(pixels) * static_cast<std::uint32_t>(routine_pixel_bytes);
    return {wrap32(static_cast<std::int64_t>(bytes)), fits};
}

std::int32_t renew_buffers(ScrollRecord& r, std::int32_t first, std::int32_t last) {
    const BufferSize size = buffer_size(r);
    std::uint8_t* made[2] = {};
    for (std::int32_t number = first; number <= last; ++number) {
        made[number - 1] = allocate_buffer(size);
        if (made[number - 1] != nullptr) continue;
        if (number > first) std::free(made[first - 1]);
        return number;
    }
    for (std::int32_t number = first; number <= last; ++number) {
        const Plane plane(r, number);
        std::free(plane.buffer());
        plane.buffer() = plane.start() = made[number - 1];
    }
    own_buffers(r);
    return 0;
}

void disown_buffers(ScrollRecord& r) {
    r.made_pixel_bytes = 0;
}

void free_buffers(ScrollRecord& r) {
    std::free(r.buffer1);
    std::free(r.buffer2);
    r.buffer1 = nullptr;
    r.buffer2 = nullptr;
    disown_buffers(r);
}

}  // namespace scroll2d
