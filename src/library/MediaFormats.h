#pragma once

#include <cstdint>

namespace quilex {

/// The libavformat demuxers for videos: only those whose files contain the media, so no playlists, stream descriptions,
/// texts or directories.
inline constexpr const char* kMediaFormats =
    "mov,matroska,webm,avi,mpegts,mpeg,mpegvideo,flv,live_flv,ogg,asf,gif,apng,webp_pipe,h264,hevc,av1,ivf,obu,nut,mxf,"
    "rm,dv,y4m,yuv4mpegpipe,m4v";

/// The most pixels that a decoded frame may have, in any shape. No monitor shows as many, and a decoder that keeps
/// several such frames needs about a gigabyte.
inline constexpr std::int64_t kMostPixels = std::int64_t{8192} * 8192;

}  // namespace quilex
