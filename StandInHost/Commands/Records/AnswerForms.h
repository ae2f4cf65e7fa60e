#pragma once
// How the answers to commands read.

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "Commands/Records/Bytes.h"

namespace standin_host {

using Fields = nlohmann::ordered_json;

// One kind of answer.
struct SAnswerForm {
    // Takes the fields off the bytes; the reader says whether they were all there.
    void (*pRead)(CByteReader& reader, Fields& fields);
    // The fields in words. What is more than one line begins each further line with "\n  ".
    std::string (*pShow)(const Fields& fields);
};

extern const SAnswerForm kDoneForm; // a result head, and behind it nothing that is worth reading
extern const SAnswerForm kEmptyForm;
extern const SAnswerForm kLoginForm;
extern const SAnswerForm kSystemInfoForm;
extern const SAnswerForm kBasicConfigForm;
extern const SAnswerForm kLayoutForm;
extern const SAnswerForm kWindowConfigForm;
extern const SAnswerForm kAudioForm;
extern const SAnswerForm kGroupsForm;

} // namespace standin_host
