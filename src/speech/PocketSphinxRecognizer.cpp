#include "speech/PocketSphinxRecognizer.h"

#include "speech/ReferenceLanguageModel.h"
#include "speech/TranscriptionError.h"

#include <pocketsphinx.h>
#include <spdlog/spdlog.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
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

/// `text` in a temporary file, for sphinxbase reads models and dictionaries only from files; the
/// caller removes it once read. Empty when no temporary file could be written.
std::filesystem::path temporaryFile(const std::string& text) {
    std::string name = (std::filesystem::temp_directory_path() / "quillon-speech-XXXXXX").string();
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0)
        return {};
    close(descriptor);
    std::ofstream(name, std::ios::binary) << text;
    return name;
}

void removeQuietly(const std::filesystem::path& file) {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
}

/// The stock dictionary with the book names it cannot spell ("Philippians", "Ephesians"). Adding
/// them to a running decoder would also add them to the general model's binary trie, which cannot
/// score words it was not built with.
std::string dictionaryWithBookNames(const std::filesystem::path& stock) {
    std::ifstream in(stock, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!text.empty() && text.back() != '\n')
        text += '\n';
    for (const auto& [word, phones] : referenceLanguageModel::pronunciations())
        text += std::string(word) + " " + std::string(phones) + "\n";
    return text;
}

/// The general English model mixed with the reference model, so "chapter three verse sixteen"
/// wins over likelier everyday phrases; the general model alone when the mix cannot be made.
ngram_model_t* mixedLanguageModel(cmd_ln_t* config, logmath_t* logmath, const std::filesystem::path& generalFile) {
    ngram_model_t* general = ngram_model_read(config, generalFile.c_str(), NGRAM_AUTO, logmath);
    if (!general)
        return nullptr;
    const std::filesystem::path file = temporaryFile(referenceLanguageModel::arpa());
    ngram_model_t* references = file.empty() ? nullptr : ngram_model_read(config, file.c_str(), NGRAM_ARPA, logmath);
    removeQuietly(file);
    if (!references) {
        spdlog::warn("Speech recognition runs without the scripture reference model.");
        return general;
    }
    ngram_model_t* models[] = {general, references};
    const char* names[] = {"general", "references"};
    // A small share is enough: the reference model only has to tip close calls between phrases.
    const float32 weights[] = {0.8f, 0.2f};
    ngram_model_t* mixed = ngram_model_set_init(config, models, const_cast<char**>(names), weights, 2);
    if (!mixed) {
        ngram_model_free(references);
        return general;
    }
    ngram_model_set_interp(mixed, names, weights);
    // The set holds its own reference to each model; ours go.
    ngram_model_free(general);
    ngram_model_free(references);
    return mixed;
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
    const std::filesystem::path dict = temporaryFile(dictionaryWithBookNames(dictionary(modelFolder)));
    if (dict.empty())
        throw TranscriptionError("Quillon could not start the speech recogniser.");
    // No second (flat) pass keeps decoding well ahead of real time on a small machine and loses
    // little on sermon speech. No dither, so the same recording always gives the same transcript.
    // The language model is given after the decoder starts, mixed with the reference model.
    std::vector<const char*> arguments = {"-hmm",   hmm.c_str(), "-dict",    dict.c_str(),
                                          "-logfn", "/dev/null", "-fwdflat", "no"};
    m_impl->config = cmd_ln_parse_r(nullptr, ps_args(), static_cast<int>(arguments.size()),
                                    const_cast<char**>(arguments.data()), FALSE);
    m_impl->decoder = m_impl->config ? ps_init(m_impl->config) : nullptr;
    removeQuietly(dict);
    if (!m_impl->decoder)
        throw TranscriptionError("Quillon could not load the speech model in " + modelFolder.string() + ".");
    ngram_model_t* model =
        mixedLanguageModel(m_impl->config, ps_get_logmath(m_impl->decoder), languageModel(modelFolder));
    // The search keeps its own reference to the model (sphinxbase counts them), so ours is
    // released whether or not the search could be made.
    const bool searchSet = model && ps_set_lm(m_impl->decoder, "sermon", model) >= 0;
    if (model)
        ngram_model_free(model);
    if (!searchSet || ps_set_search(m_impl->decoder, "sermon") < 0)
        throw TranscriptionError("Quillon could not load the speech model in " + modelFolder.string() + ".");
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
