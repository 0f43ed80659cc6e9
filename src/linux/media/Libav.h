#pragma once

extern "C" {
#include <libavcodec/packet.h>
#include <libavcodec/vorbis_parser.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/mem.h>
}

#include <cstddef>
#include <memory>

namespace quilex {

struct LibavDestroyer {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVVorbisParseContext* parser) const { av_vorbis_parse_free(&parser); }
  void operator()(AVIOContext* io) const {
    av_freep(&io->buffer);
    avio_context_free(&io);
  }
};
using Packet = std::unique_ptr<AVPacket, LibavDestroyer>;
using VorbisParser = std::unique_ptr<AVVorbisParseContext, LibavDestroyer>;
/// Reads or writes the bytes of a format context, which does not own it.
using IoContext = std::unique_ptr<AVIOContext, LibavDestroyer>;

struct InputCloser {
  void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
using InputContext = std::unique_ptr<AVFormatContext, InputCloser>;

struct OutputCloser {
  void operator()(AVFormatContext* context) const { avformat_free_context(context); }
};
using OutputContext = std::unique_ptr<AVFormatContext, OutputCloser>;

/// Options of a call to the library.
class Dictionary {
 public:
  Dictionary() = default;
  ~Dictionary() { av_dict_free(&entries_); }
  Dictionary(const Dictionary&) = delete;
  Dictionary& operator=(const Dictionary&) = delete;

  void set(const char* key, const char* value) { av_dict_set(&entries_, key, value, 0); }
  /// For a call that removes the entries it knows.
  AVDictionary** get() { return &entries_; }

 private:
  AVDictionary* entries_ = nullptr;
};

/// `functions` read, write and seek, as avio_alloc_context takes them. Null when there is no memory left.
template <typename... Functions>
IoContext makeIoContext(int bufferBytes, bool writes, void* opaque, Functions... functions) {
  auto* buffer = static_cast<unsigned char*>(av_malloc(static_cast<std::size_t>(bufferBytes)));
  IoContext io(avio_alloc_context(buffer, bufferBytes, writes ? 1 : 0, opaque, functions...));
  if (!io) {
    av_free(buffer);
  }
  return io;
}

}  // namespace quilex
