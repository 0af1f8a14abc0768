#include "speech/PocketSphinxRecognizer.h"

#include "speech/ReferenceLanguageModel.h"
#include "speech/TranscriptionError.h"

#include <pocketsphinx.h>
#include <spdlog/spdlog.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace quillon::speech {

namespace {

constexpr int framesPerSecond = 100;
constexpr std::int64_t longestUtterance = 30 * AudioDecoder::sampleRate;

std::filesystem::path acousticModel(const std::filesystem::path& folder) {
    return folder / "en-us";
}
std::filesystem::path languageModel(const std::filesystem::path& folder) {
    return folder / "en-us.lm.bin";
}
std::filesystem::path dictionary(const std::filesystem::path& folder) {
    return folder / "cmudict-en-us.dict";
}

/// "<s>", "</s>", "<sil>", "[NOISE]" and the like are the decoder's markers, not words.
bool isWord(const char* word) {
    return word && word[0] != '<' && word[0] != '[';
}

/// "read(2)" is the dictionary's second pronunciation of "read".
std::string spelling(const char* word) {
    std::string text(word);
    if (std::size_t paren = text.find('('); paren != std::string::npos && text.back() == ')')
        text.erase(paren);
    return text;
}

/// The reference model as a file, for sphinxbase reads models only from files; removed again at
/// once. Empty when no temporary file could be written.
std::filesystem::path writeReferenceModel() {
    std::string name = (std::filesystem::temp_directory_path() / "quillon-references-XXXXXX").string();
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0)
        return {};
    close(descriptor);
    std::ofstream(name, std::ios::binary) << referenceLanguageModel::arpa();
    return name;
}

/// Mixes the reference model into the decoder's general model and teaches it the missing book
/// names. Without this, most book names cannot be heard at all ("Philippians" is not in the stock
/// dictionary) and "chapter three verse sixteen" loses to likelier everyday phrases.
void teachReferences(ps_decoder_t* decoder, cmd_ln_t* config) {
    for (const auto& [word, phones] : referenceLanguageModel::pronunciations())
        ps_add_word(decoder, std::string(word).c_str(), std::string(phones).c_str(), FALSE);
    ngram_model_t* general = ps_get_lm(decoder, ps_get_search(decoder));
    const std::filesystem::path file = writeReferenceModel();
    if (!general || file.empty()) {
        spdlog::warn("Speech recognition runs without the scripture reference model.");
        return;
    }
    ngram_model_t* references = ngram_model_read(config, file.c_str(), NGRAM_ARPA, ps_get_logmath(decoder));
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    if (!references) {
        spdlog::warn("Speech recognition runs without the scripture reference model.");
        return;
    }
    ngram_model_t* models[] = {ngram_model_retain(general), references};
    const char* names[] = {"general", "references"};
    // A small share is enough: the reference model only has to tip close calls between phrases.
    const float32 weights[] = {0.8f, 0.2f};
    ngram_model_t* mixed = ngram_model_set_init(config, models, const_cast<char**>(names), weights, 2);
    if (!mixed) {
        ngram_model_free(general);
        ngram_model_free(references);
        return;
    }
    ngram_model_set_interp(mixed, names, weights);
    // The search takes the mixed model over. Releases of sphinxbase differ in whether a set retains
    // its members, so nothing more is released here: at worst the models stay until the process ends.
    if (ps_set_lm(decoder, "references", mixed) == 0)
        ps_set_search(decoder, "references");
}

} // namespace

struct PocketSphinxRecognizer::Impl {
    cmd_ln_t* config = nullptr;
    ps_decoder_t* decoder = nullptr;

    ~Impl() {
        if (decoder)
            ps_free(decoder);
        if (config)
            cmd_ln_free_r(config);
    }

    /// The finished utterance's words, split where the speaker paused, placed at `offsetSeconds`.
    void collect(Transcript& transcript, double offsetSeconds) {
        TranscriptSegment current;
        double lastEnd = -1;
        for (ps_seg_t* seg = ps_seg_iter(decoder); seg; seg = ps_seg_next(seg)) {
            const char* word = ps_seg_word(seg);
            if (!isWord(word))
                continue;
            int startFrame = 0;
            int endFrame = 0;
            ps_seg_frames(seg, &startFrame, &endFrame);
            const double start = offsetSeconds + static_cast<double>(startFrame) / framesPerSecond;
            const double end = offsetSeconds + static_cast<double>(endFrame + 1) / framesPerSecond;
            if (!current.text.empty() && start - lastEnd >= pauseSeconds) {
                transcript.segments.push_back(std::move(current));
                current = {};
            }
            if (current.text.empty())
                current.startSeconds = start;
            else
                current.text += ' ';
            current.text += spelling(word);
            current.endSeconds = lastEnd = end;
        }
        if (!current.text.empty())
            transcript.segments.push_back(std::move(current));
    }
};

PocketSphinxRecognizer::PocketSphinxRecognizer(const std::filesystem::path& modelFolder)
    : m_impl(std::make_unique<Impl>()) {
    if (!isInstalled(modelFolder))
        throw TranscriptionError("Quillon could not find the speech model in " + modelFolder.string() + ".");
    const std::string hmm = acousticModel(modelFolder).string();
    const std::string lm = languageModel(modelFolder).string();
    const std::string dict = dictionary(modelFolder).string();
    // No second (flat) pass keeps decoding well ahead of real time on a small machine and loses
    // little on sermon speech. No dither, so the same recording always gives the same transcript.
    std::vector<const char*> arguments = {"-hmm",       hmm.c_str(), "-lm",       lm.c_str(), "-dict",
                                          dict.c_str(), "-logfn",    "/dev/null", "-fwdflat", "no"};
    m_impl->config = cmd_ln_parse_r(nullptr, ps_args(), static_cast<int>(arguments.size()),
                                    const_cast<char**>(arguments.data()), FALSE);
    if (!m_impl->config)
        throw TranscriptionError("Quillon could not start the speech recogniser.");
    m_impl->decoder = ps_init(m_impl->config);
    if (!m_impl->decoder)
        throw TranscriptionError("Quillon could not load the speech model in " + modelFolder.string() + ".");
    teachReferences(m_impl->decoder, m_impl->config);
}

PocketSphinxRecognizer::~PocketSphinxRecognizer() = default;

bool PocketSphinxRecognizer::isInstalled(const std::filesystem::path& modelFolder) {
    std::error_code error;
    return std::filesystem::is_regular_file(acousticModel(modelFolder) / "mdef", error) &&
           std::filesystem::is_regular_file(languageModel(modelFolder), error) &&
           std::filesystem::is_regular_file(dictionary(modelFolder), error);
}

std::optional<Transcript> PocketSphinxRecognizer::transcribe(AudioDecoder& audio, std::stop_token stop,
                                                             const TranscriptionProgress& progress) {
    ps_decoder_t* decoder = m_impl->decoder;
    Transcript transcript;
    transcript.recognizer = "pocketsphinx";
    const double total = audio.durationSeconds();

    std::int64_t heard = 0;
    std::int64_t utteranceStart = 0;
    bool wasInSpeech = false;
    auto finishUtterance = [&] {
        ps_end_utt(decoder);
        m_impl->collect(transcript, static_cast<double>(utteranceStart) / AudioDecoder::sampleRate);
        utteranceStart = heard;
        wasInSpeech = false;
        ps_start_utt(decoder);
    };

    if (ps_start_utt(decoder) < 0)
        throw TranscriptionError("Quillon could not start the speech recogniser.");
    std::vector<std::int16_t> block;
    while (audio.read(block)) {
        if (stop.stop_requested()) {
            ps_end_utt(decoder);
            return std::nullopt;
        }
        ps_process_raw(decoder, block.data(), block.size(), FALSE, FALSE);
        heard += static_cast<std::int64_t>(block.size());
        const bool inSpeech = ps_get_in_speech(decoder) != 0;
        if ((wasInSpeech && !inSpeech) || heard - utteranceStart >= longestUtterance)
            finishUtterance();
        else
            wasInSpeech = inSpeech;
        if (progress)
            progress(static_cast<double>(heard) / AudioDecoder::sampleRate, total);
    }
    ps_end_utt(decoder);
    m_impl->collect(transcript, static_cast<double>(utteranceStart) / AudioDecoder::sampleRate);
    transcript.durationSeconds = static_cast<double>(heard) / AudioDecoder::sampleRate;
    return transcript;
}

} // namespace quillon::speech
