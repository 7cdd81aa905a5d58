#ifndef QV_AUDIO_H
#define QV_AUDIO_H

namespace qv {
namespace platform {

// Whether sound can be heard: the audio library opens the default output
// device. Asked once per process, before the engine makes anything that
// plays; the library's own complaints during the attempt are kept off
// standard error. Later calls give the first answer.
bool audioOutputAvailable();

}  // namespace platform
}  // namespace qv

#endif
