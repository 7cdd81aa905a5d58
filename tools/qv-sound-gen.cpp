// qv-sound-gen: renders the game's wave files from a plain-text description
// of notes, voices and envelopes (the format is explained at the top of
// tools/sounds.txt).
//
//   qv-sound-gen DESCRIPTION OUTPUT_FOLDER
//
// Output is 16-bit PCM mono at 22050 Hz, each file normalised to a peak of
// -1 dBFS. The same description always gives byte-identical files: noise
// comes from a fixed-seed generator of our own, and the sine and note
// frequencies are computed here rather than by the maths library, so a
// different libm cannot change a single sample. Errors name the description
// file and line; nothing is written unless the whole description is valid.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

// A fused multiply-add rounds once instead of twice; letting the compiler use
// one where the processor has it would change samples between builds.
#pragma GCC optimize("fp-contract=off")

namespace {

constexpr int SAMPLE_RATE = 22050;
constexpr double PEAK = 0.8912509381337456;  // -1 dBFS
constexpr int FADE_SAMPLES = SAMPLE_RATE * 4 / 1000;
constexpr double PI = 3.14159265358979323846;

enum class Wave { SQUARE, TRIANGLE, SAW, SINE, NOISE };

struct Envelope {
  double attack_ms = 2;
  double decay_ms = 0;
  double sustain = 1;
  double release_ms = 20;
};

// One pitch of a note: the frequency slides linearly from `from` to `to`
// over the note's length.
struct Pitch {
  double from;
  double to;
};

struct Note {
  double start;  // seconds
  double length;
  std::vector<Pitch> pitches;  // empty for a rest
};

struct Token {
  std::string text;
  int line;
};

struct Voice {
  int line = 0;
  Wave wave = Wave::SQUARE;
  double volume = 1;
  double duty = 0.5;
  Envelope env;
  std::vector<Token> tokens;
  std::vector<Note> notes;
  double length = 0;  // seconds, rests included
};

struct SoundFile {
  std::string name;
  int line = 0;
  double tempo = 120;
  bool loop = false;
  std::vector<Voice> voices;
};

// Reports description errors as "FILE:LINE: message"; the first one wins.
class Errors {
 public:
  explicit Errors(std::string file) : m_file(std::move(file)) {}
  bool any() const { return m_any; }
  void at(int line, const std::string &message) {
    if (m_any) return;
    m_any = true;
    std::fprintf(stderr, "%s:%d: %s\n", m_file.c_str(), line, message.c_str());
  }

 private:
  std::string m_file;
  bool m_any = false;
};

bool parseNumber(const std::string &text, double &value) {
  if (text.empty()) return false;
  const char *end = text.data() + text.size();
  auto [ptr, ec] = std::from_chars(text.data(), end, value);
  return ec == std::errc() && ptr == end;
}

// sin(2 pi phase) by a Taylor series after folding into [-pi/2, pi/2], where
// the error stays below 1e-7.
double sineOfPhase(double phase) {
  double x = phase - static_cast<double>(static_cast<long long>(phase));
  if (x >= 0.5) x -= 1;
  double y = 2 * PI * x;
  if (y > PI / 2) y = PI - y;
  if (y < -PI / 2) y = -PI - y;
  double y2 = y * y;
  double sum = 1.0 / 6227020800.0;  // 1/13!
  const double coeffs[] = {-1.0 / 39916800.0, 1.0 / 362880.0, -1.0 / 5040.0,
                           1.0 / 120.0,       -1.0 / 6.0,     1.0};
  for (double c : coeffs) sum = sum * y2 + c;
  return sum * y;
}

// Frequency of a note name such as "C4", "F#3" or "Bb5" (A4 = 440 Hz), or of
// a plain "261.6hz"; false if the text is neither.
bool parseFrequency(const std::string &text, double &hz) {
  if (text.size() > 2 && text.compare(text.size() - 2, 2, "hz") == 0)
    return parseNumber(text.substr(0, text.size() - 2), hz) && hz > 0 && hz < 100000;
  static const int LETTER_SEMITONES[] = {9, 11, 0, 2, 4, 5, 7};  // A..G above C
  // 2^(k/12): equal temperament without calling pow.
  static const double SEMITONE_RATIO[] = {1.0,
                                          1.0594630943592953,
                                          1.122462048309373,
                                          1.189207115002721,
                                          1.2599210498948732,
                                          1.3348398541700344,
                                          1.4142135623730951,
                                          1.4983070768766815,
                                          1.5874010519681994,
                                          1.681792830507429,
                                          1.7817974362806785,
                                          1.8877486253633868};
  if (text.size() < 2 || text.size() > 3 || text[0] < 'A' || text[0] > 'G') return false;
  int semitone = LETTER_SEMITONES[text[0] - 'A'];
  std::size_t pos = 1;
  if (text.size() == 3) {
    if (text[1] == '#')
      semitone++;
    else if (text[1] == 'b')
      semitone--;
    else
      return false;
    pos = 2;
  }
  char digit = text[pos];
  if (digit < '0' || digit > '9') return false;
  // Semitones above C4, then up or down to the right octave of A4's table.
  int from_c4 = semitone + 12 * (digit - '4');
  int from_a4 = from_c4 - 9;
  int octaves = from_a4 >= 0 ? from_a4 / 12 : -((-from_a4 + 11) / 12);
  hz = 440.0 * SEMITONE_RATIO[from_a4 - 12 * octaves];
  for (; octaves > 0; octaves--) hz *= 2;
  for (; octaves < 0; octaves++) hz /= 2;
  return true;
}

bool parseWave(const std::string &name, Wave &wave) {
  static const std::pair<const char *, Wave> WAVES[] = {{"square", Wave::SQUARE},
                                                        {"triangle", Wave::TRIANGLE},
                                                        {"saw", Wave::SAW},
                                                        {"sine", Wave::SINE},
                                                        {"noise", Wave::NOISE}};
  for (const auto &[text, value] : WAVES)
    if (name == text) {
      wave = value;
      return true;
    }
  return false;
}

// Expands "[ ... ]xN" groups; `pos` ends past the group's closing token.
void expandGroups(const std::vector<Token> &in, std::size_t &pos, std::vector<Token> &out,
                  Errors &errors, bool nested, int open_line) {
  while (pos < in.size() && !errors.any()) {
    const Token &token = in[pos++];
    if (token.text == "[") {
      std::vector<Token> body;
      expandGroups(in, pos, body, errors, true, token.line);
      if (errors.any()) return;
      const std::string &close = in[pos - 1].text;
      double count = 0;
      if (close.size() < 3 || close[1] != 'x' || !parseNumber(close.substr(2), count) ||
          count < 1 || count != static_cast<int>(count)) {
        errors.at(in[pos - 1].line, "bad repeat \"" + close + "\" (expected ]x2, ]x3, ...)");
        return;
      }
      for (int i = 0; i < static_cast<int>(count); i++)
        out.insert(out.end(), body.begin(), body.end());
    } else if (token.text[0] == ']') {
      if (!nested) errors.at(token.line, "\"" + token.text + "\" without a matching [");
      return;
    } else {
      out.push_back(token);
    }
  }
  if (nested && !errors.any()) errors.at(open_line, "[ without a matching ]xN");
}

// Splits a leading "[" and a trailing "]xN" off a word, so they may be
// written attached to a note.
void splitNoteWords(const std::string &word, int line, std::vector<Token> &out) {
  std::size_t begin = 0;
  while (begin < word.size() && word[begin] == '[') {
    out.push_back({"[", line});
    begin++;
  }
  std::size_t close = word.find(']', begin);
  if (close == std::string::npos) close = word.size();
  if (close > begin) out.push_back({word.substr(begin, close - begin), line});
  if (close < word.size()) out.push_back({word.substr(close), line});
}

// Turns a voice's words into timed notes. A note without a length keeps the
// previous one (a beat at the start of the voice).
void resolveNotes(Voice &voice, double tempo, Errors &errors) {
  std::vector<Token> words;
  std::size_t pos = 0;
  expandGroups(voice.tokens, pos, words, errors, false, voice.line);
  // Beats and milliseconds are summed apart, so whole beats land on exact
  // sample positions however long the piece.
  double beats = 0;
  double millis = 0;
  double length = 1;
  bool in_ms = false;
  for (const Token &word : words) {
    if (errors.any()) return;
    std::string pitch_text = word.text;
    std::size_t colon = pitch_text.find(':');
    if (colon != std::string::npos) {
      std::string len_text = pitch_text.substr(colon + 1);
      pitch_text.resize(colon);
      in_ms = len_text.size() > 2 && len_text.compare(len_text.size() - 2, 2, "ms") == 0;
      if (in_ms) len_text.resize(len_text.size() - 2);
      if (!parseNumber(len_text, length) || length <= 0) {
        errors.at(word.line, "bad length in \"" + word.text + "\" (beats such as 0.5, or 120ms)");
        return;
      }
    }
    Note note;
    note.start = beats * 60.0 / tempo + millis / 1000;
    note.length = in_ms ? length / 1000 : length * 60.0 / tempo;
    (in_ms ? millis : beats) += length;
    if (pitch_text != "r") {
      std::stringstream chord(pitch_text);
      std::string part;
      while (std::getline(chord, part, '+')) {
        std::size_t arrow = part.find('>');
        std::string from = part.substr(0, arrow);
        std::string to = arrow == std::string::npos ? from : part.substr(arrow + 1);
        Pitch pitch{};
        if (!parseFrequency(from, pitch.from) || !parseFrequency(to, pitch.to)) {
          errors.at(word.line, "bad note \"" + word.text +
                                   "\" (expected r, a note such as C4, F#3, Bb5, or 440hz)");
          return;
        }
        note.pitches.push_back(pitch);
      }
      if (note.pitches.empty()) {
        errors.at(word.line, "bad note \"" + word.text + "\"");
        return;
      }
    }
    voice.notes.push_back(note);
  }
  voice.length = beats * 60.0 / tempo + millis / 1000;
}

bool needArgs(const std::vector<std::string> &words, std::size_t count, int line, Errors &errors) {
  if (words.size() == count + 1) return true;
  errors.at(line, "\"" + words[0] + "\" takes " + std::to_string(count) +
                      (count == 1 ? " value" : " values"));
  return false;
}

bool numberArg(const std::string &text, double low, double high, const std::string &what, int line,
               Errors &errors, double &value) {
  if (parseNumber(text, value) && value >= low && value <= high) return true;
  std::ostringstream range;
  range << low << " to " << high;
  errors.at(line, "bad " + what + " \"" + text + "\" (" + range.str() + ")");
  return false;
}

std::vector<SoundFile> parseDescription(std::istream &in, Errors &errors) {
  std::vector<SoundFile> files;
  std::string text;
  int line = 0;
  while (std::getline(in, text) && !errors.any()) {
    line++;
    // A comment starts at a '#' that begins a word; F#4 is a note.
    for (std::size_t i = 0; i < text.size(); i++)
      if (text[i] == '#' && (i == 0 || text[i - 1] == ' ' || text[i - 1] == '\t')) {
        text.resize(i);
        break;
      }
    std::istringstream words_in(text);
    std::vector<std::string> words;
    for (std::string w; words_in >> w;) words.push_back(w);
    if (words.empty()) continue;
    const std::string &key = words[0];
    if (key == "file") {
      if (!needArgs(words, 1, line, errors)) break;
      const std::string &name = words[1];
      if (name.size() < 5 || name.compare(name.size() - 4, 4, ".wav") != 0 ||
          name.find('/') != std::string::npos) {
        errors.at(line, "bad file name \"" + name + "\" (a plain NAME.wav)");
        break;
      }
      for (const SoundFile &f : files)
        if (f.name == name) errors.at(line, "file \"" + name + "\" described twice");
      files.emplace_back();
      files.back().name = name;
      files.back().line = line;
      continue;
    }
    if (files.empty()) {
      errors.at(line, "\"" + key + "\" before the first \"file\"");
      break;
    }
    SoundFile &file = files.back();
    if (key == "tempo") {
      if (needArgs(words, 1, line, errors))
        numberArg(words[1], 20, 400, "tempo", line, errors, file.tempo);
    } else if (key == "loop") {
      if (needArgs(words, 0, line, errors)) file.loop = true;
    } else if (key == "voice") {
      if (!needArgs(words, 1, line, errors)) break;
      Voice voice;
      voice.line = line;
      if (!parseWave(words[1], voice.wave))
        errors.at(line,
                  "unknown waveform \"" + words[1] + "\" (square, triangle, saw, sine or noise)");
      file.voices.push_back(voice);
    } else if (file.voices.empty()) {
      if (key == "volume" || key == "env" || key == "duty" || key == "notes")
        errors.at(line, "\"" + key + "\" before the file's first \"voice\"");
      else
        errors.at(line, "unknown statement \"" + key + "\"");
    } else if (key == "volume") {
      if (needArgs(words, 1, line, errors))
        numberArg(words[1], 0, 1, "volume", line, errors, file.voices.back().volume);
    } else if (key == "duty") {
      if (needArgs(words, 1, line, errors))
        numberArg(words[1], 0.05, 0.95, "duty", line, errors, file.voices.back().duty);
    } else if (key == "env") {
      Envelope &env = file.voices.back().env;
      if (needArgs(words, 4, line, errors) &&
          numberArg(words[1], 0, 10000, "attack", line, errors, env.attack_ms) &&
          numberArg(words[2], 0, 10000, "decay", line, errors, env.decay_ms) &&
          numberArg(words[3], 0, 1, "sustain", line, errors, env.sustain))
        numberArg(words[4], 0, 10000, "release", line, errors, env.release_ms);
    } else if (key == "notes") {
      for (std::size_t i = 1; i < words.size(); i++)
        splitNoteWords(words[i], line, file.voices.back().tokens);
    } else {
      errors.at(line, "unknown statement \"" + key + "\"");
    }
  }
  for (SoundFile &file : files) {
    for (Voice &voice : file.voices) resolveNotes(voice, file.tempo, errors);
    if (errors.any()) break;
    bool sounds = false;
    for (const Voice &voice : file.voices)
      for (const Note &note : voice.notes) sounds = sounds || !note.pitches.empty();
    if (!sounds) errors.at(file.line, "file \"" + file.name + "\" has no notes");
    if (file.loop)
      for (const Voice &voice : file.voices)
        if (std::lround(voice.length * SAMPLE_RATE) !=
            std::lround(file.voices[0].length * SAMPLE_RATE))
          errors.at(voice.line, "voices of a looping file must be equally long");
  }
  return files;
}

// A small xorshift generator: the same noise on every machine.
class Noise {
 public:
  explicit Noise(std::uint32_t seed) : m_state(seed ? seed : 1) {}
  double next() {
    m_state ^= m_state << 13;
    m_state ^= m_state >> 17;
    m_state ^= m_state << 5;
    return static_cast<double>(m_state) / 2147483647.5 - 1.0;
  }

 private:
  std::uint32_t m_state;
};

long samplesOf(double seconds) {
  return std::lround(seconds * SAMPLE_RATE);
}

// Envelope level at sample i of a note whose key is held for `held` samples.
// Decay and release fall along a square curve, close to the natural
// exponential fall of a struck or plucked sound.
double envelopeAt(const Envelope &env, long i, long held) {
  long attack = samplesOf(env.attack_ms / 1000);
  long decay = samplesOf(env.decay_ms / 1000);
  auto heldLevel = [&](long j) {
    if (j < attack) return static_cast<double>(j) / attack;
    if (j < attack + decay) {
      double u = 1 - static_cast<double>(j - attack) / decay;
      return env.sustain + (1 - env.sustain) * u * u;
    }
    return env.sustain;
  };
  if (i < held) return heldLevel(i);
  long release = samplesOf(env.release_ms / 1000);
  if (release == 0) return 0;
  double u = 1 - static_cast<double>(i - held) / release;
  return heldLevel(held) * u * u;
}

double oscillator(Wave wave, double phase, double duty) {
  switch (wave) {
    case Wave::SQUARE:
      return phase < duty ? 1 : -1;
    case Wave::TRIANGLE:  // starts at zero, rising
      return phase < 0.25 ? 4 * phase : phase < 0.75 ? 2 - 4 * phase : 4 * phase - 4;
    case Wave::SAW:  // starts at zero, rising
      return phase < 0.5 ? 2 * phase : 2 * phase - 2;
    case Wave::SINE:
      return sineOfPhase(phase);
    case Wave::NOISE:
      break;
  }
  return 0;
}

std::vector<double> render(const SoundFile &file) {
  long total = 0;
  for (const Voice &voice : file.voices) {
    if (file.loop) {
      total = std::max(total, samplesOf(voice.length));
      continue;
    }
    long release = samplesOf(voice.env.release_ms / 1000);
    for (const Note &note : voice.notes)
      if (!note.pitches.empty())
        total = std::max(total, samplesOf(note.start + note.length) + release);
  }
  std::vector<double> mix(static_cast<std::size_t>(total), 0.0);
  std::uint32_t seed = 0x5eed1234u;
  for (const Voice &voice : file.voices) {
    seed += 0x9e3779b9u;  // each voice its own, fixed noise
    Noise noise(seed);
    long release = samplesOf(voice.env.release_ms / 1000);
    for (const Note &note : voice.notes) {
      long start = samplesOf(note.start);
      long held = samplesOf(note.start + note.length) - start;
      for (const Pitch &pitch : note.pitches) {
        double phase = 0;
        double hold = noise.next();
        for (long i = 0; i < held + release && start + i < total; i++) {
          double slide = held > 0 && i < held ? static_cast<double>(i) / held : 1.0;
          double hz = pitch.from + (pitch.to - pitch.from) * slide;
          double value =
              voice.wave == Wave::NOISE ? hold : oscillator(voice.wave, phase, voice.duty);
          mix[static_cast<std::size_t>(start + i)] +=
              value * voice.volume * envelopeAt(voice.env, i, held);
          phase += hz / SAMPLE_RATE;
          if (phase >= 1) {
            phase -= static_cast<double>(static_cast<long long>(phase));
            if (voice.wave == Wave::NOISE) hold = noise.next();
          }
        }
      }
    }
  }
  // Both ends at zero: no click when a piece starts, stops or loops.
  long fade = std::min<long>(FADE_SAMPLES, total / 2);
  for (long i = 0; i < fade; i++) {
    double gain = static_cast<double>(i) / fade;
    mix[static_cast<std::size_t>(i)] *= gain;
    mix[static_cast<std::size_t>(total - 1 - i)] *= gain;
  }
  return mix;
}

void putLE(std::string &out, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; i++) out.push_back(static_cast<char>((value >> (8 * i)) & 0xff));
}

// The samples scaled to a -1 dBFS peak, as a complete wave file.
std::string waveFile(const std::vector<double> &mix) {
  double peak = 0;
  for (double s : mix) peak = std::max(peak, s < 0 ? -s : s);
  double scale = peak > 0 ? PEAK * 32767 / peak : 0;
  std::uint32_t data_size = static_cast<std::uint32_t>(mix.size() * 2);
  std::string out = "RIFF";
  putLE(out, 36 + data_size, 4);
  out += "WAVEfmt ";
  putLE(out, 16, 4);
  putLE(out, 1, 2);  // PCM
  putLE(out, 1, 2);  // mono
  putLE(out, SAMPLE_RATE, 4);
  putLE(out, SAMPLE_RATE * 2, 4);
  putLE(out, 2, 2);
  putLE(out, 16, 2);
  out += "data";
  putLE(out, data_size, 4);
  for (double s : mix) {
    long v = std::lround(s * scale);
    v = std::max(-32767L, std::min(32767L, v));
    putLE(out, static_cast<std::uint32_t>(static_cast<std::int16_t>(v)) & 0xffff, 2);
  }
  return out;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: qv-sound-gen DESCRIPTION OUTPUT_FOLDER\n");
    return 1;
  }
  std::ifstream in(argv[1]);
  if (!in) {
    std::fprintf(stderr, "qv-sound-gen: cannot read \"%s\"\n", argv[1]);
    return 1;
  }
  Errors errors(argv[1]);
  std::vector<SoundFile> files = parseDescription(in, errors);
  if (errors.any()) return 1;
  if (files.empty()) {
    std::fprintf(stderr, "%s: describes no file\n", argv[1]);
    return 1;
  }
  std::error_code ec;
  std::filesystem::create_directories(argv[2], ec);
  for (const SoundFile &file : files) {
    std::vector<double> mix = render(file);
    std::string path = (std::filesystem::path(argv[2]) / file.name).string();
    std::ofstream out(path, std::ios::binary);
    out << waveFile(mix);
    if (!out.flush()) {
      std::fprintf(stderr, "qv-sound-gen: cannot write \"%s\"\n", path.c_str());
      return 1;
    }
    std::printf("%s: %ld ms\n", path.c_str(), std::lround(mix.size() * 1000.0 / SAMPLE_RATE));
  }
  return 0;
}
