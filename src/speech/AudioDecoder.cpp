#include "speech/AudioDecoder.h"

#include "speech/TranscriptionError.h"

#include <algorithm>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace quillon::speech {

namespace {

struct FormatCloser {
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
};
struct CodecFreer {
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
};
struct PacketFreer {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FrameFreer {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
struct ResamplerFreer {
    void operator()(SwrContext* resampler) const { swr_free(&resampler); }
};

std::string unreadable(const std::filesystem::path& file) {
    return "Quillon could not read audio from “" + file.filename().string() + "”.";
}

} // namespace

struct AudioDecoder::Impl {
    std::unique_ptr<AVFormatContext, FormatCloser> format;
    std::unique_ptr<AVCodecContext, CodecFreer> codec;
    std::unique_ptr<SwrContext, ResamplerFreer> resampler;
    std::unique_ptr<AVPacket, PacketFreer> packet{av_packet_alloc()};
    std::unique_ptr<AVFrame, FrameFreer> frame{av_frame_alloc()};
    int stream = -1;
    bool inputEnded = false;
    bool drained = false;
    std::int64_t delivered = 0;

    /// The next decoded frame, or false when the decoder has nothing more.
    bool nextFrame() {
        for (;;) {
            int received = avcodec_receive_frame(codec.get(), frame.get());
            if (received == 0)
                return true;
            if (received == AVERROR_EOF)
                return false;
            if (received != AVERROR(EAGAIN))
                return false;
            if (inputEnded)
                return false;
            feedPacket();
        }
    }

    void feedPacket() {
        for (;;) {
            int read = av_read_frame(format.get(), packet.get());
            if (read < 0) {
                inputEnded = true;
                avcodec_send_packet(codec.get(), nullptr);
                return;
            }
            if (packet->stream_index != stream) {
                av_packet_unref(packet.get());
                continue;
            }
            // A packet the decoder rejects is damage in the recording: skip it and go on.
            avcodec_send_packet(codec.get(), packet.get());
            av_packet_unref(packet.get());
            return;
        }
    }

    void convert(std::vector<std::int16_t>& samples, const std::uint8_t** input, int inputCount) {
        int capacity = swr_get_out_samples(resampler.get(), inputCount);
        if (capacity <= 0)
            return;
        samples.resize(static_cast<std::size_t>(capacity));
        auto* output = reinterpret_cast<std::uint8_t*>(samples.data());
        int converted = swr_convert(resampler.get(), &output, capacity, input, inputCount);
        samples.resize(static_cast<std::size_t>(std::max(converted, 0)));
    }
};

AudioDecoder::AudioDecoder(const std::filesystem::path& file) : m_impl(std::make_unique<Impl>()) {
    av_log_set_level(AV_LOG_QUIET);
    AVFormatContext* format = nullptr;
    if (avformat_open_input(&format, file.c_str(), nullptr, nullptr) < 0)
        throw TranscriptionError(unreadable(file));
    m_impl->format.reset(format);
    if (avformat_find_stream_info(format, nullptr) < 0)
        throw TranscriptionError(unreadable(file));
    const AVCodec* decoder = nullptr;
    m_impl->stream = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (m_impl->stream < 0 || !decoder)
        throw TranscriptionError("“" + file.filename().string() + "” holds no audio Quillon can read.");

    m_impl->codec.reset(avcodec_alloc_context3(decoder));
    AVCodecContext* codec = m_impl->codec.get();
    if (!codec || avcodec_parameters_to_context(codec, format->streams[m_impl->stream]->codecpar) < 0 ||
        avcodec_open2(codec, decoder, nullptr) < 0)
        throw TranscriptionError(unreadable(file));
    if (codec->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC || codec->ch_layout.nb_channels == 0)
        av_channel_layout_default(&codec->ch_layout, std::max(codec->ch_layout.nb_channels, 1));

    AVChannelLayout mono{};
    av_channel_layout_default(&mono, 1);
    SwrContext* resampler = nullptr;
    if (swr_alloc_set_opts2(&resampler, &mono, AV_SAMPLE_FMT_S16, sampleRate, &codec->ch_layout, codec->sample_fmt,
                            codec->sample_rate, 0, nullptr) < 0 ||
        swr_init(resampler) < 0) {
        swr_free(&resampler);
        throw TranscriptionError(unreadable(file));
    }
    m_impl->resampler.reset(resampler);
}

AudioDecoder::~AudioDecoder() = default;

bool AudioDecoder::read(std::vector<std::int16_t>& samples) {
    samples.clear();
    while (samples.empty() && !m_impl->drained) {
        if (m_impl->nextFrame()) {
            AVFrame* frame = m_impl->frame.get();
            m_impl->convert(samples, const_cast<const std::uint8_t**>(frame->extended_data), frame->nb_samples);
            av_frame_unref(frame);
        } else {
            // The resampler holds back a few samples of filter delay until it is flushed.
            m_impl->convert(samples, nullptr, 0);
            m_impl->drained = true;
        }
    }
    m_impl->delivered += static_cast<std::int64_t>(samples.size());
    return !samples.empty();
}

double AudioDecoder::durationSeconds() const {
    const AVFormatContext* format = m_impl->format.get();
    const AVStream* stream = format->streams[m_impl->stream];
    if (stream->duration > 0 && stream->time_base.den > 0)
        return static_cast<double>(stream->duration) * av_q2d(stream->time_base);
    if (format->duration > 0)
        return static_cast<double>(format->duration) / AV_TIME_BASE;
    return 0;
}

double AudioDecoder::positionSeconds() const {
    return static_cast<double>(m_impl->delivered) / sampleRate;
}

} // namespace quillon::speech
