#pragma once

#include <cstdint>

namespace quilex {

/// The libavformat demuxers that videos may be read with: those whose files hold their media themselves. Playlists,
/// descriptions of streams, text and directories are not media.
inline constexpr const char* kMediaFormats =
    "mov,matroska,webm,avi,mpegts,mpeg,mpegvideo,flv,live_flv,ogg,asf,gif,apng,webp_pipe,h264,hevc,av1,ivf,obu,nut,mxf,"
    "rm,dv,y4m,yuv4mpegpipe,m4v";

/// The largest picture that is decoded, in pixels of any shape. No monitor shows as much; a decoder that
/// keeps several such pictures already needs about a gigabyte.
inline constexpr std::int64_t kMostPixels = std::int64_t{8192} * 8192;

}  // namespace quilex
