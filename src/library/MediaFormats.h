#pragma once

namespace quilex {

/// The libavformat demuxers that videos may be read with: those whose files hold their media themselves. Playlists,
/// descriptions of streams, text and directories are not media.
inline constexpr const char* kMediaFormats =
    "mov,matroska,webm,avi,mpegts,mpeg,mpegvideo,flv,live_flv,ogg,asf,gif,apng,webp_pipe,h264,hevc,av1,ivf,obu,nut,mxf,"
    "rm,dv,y4m,yuv4mpegpipe,m4v";

/// The libavformat protocols that a demuxer may open anything with.
inline constexpr const char* kMediaProtocols = "file";

}  // namespace quilex
