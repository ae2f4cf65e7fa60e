#pragma once
// How answers to commands are read.

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "Commands/Records/Bytes.h"

namespace standin_host {

using Fields = nlohmann::ordered_json;

// One kind of answer.
struct AnswerForm {
    // Reads the fields from the bytes; the reader tells whether they were all there.
    void (*read)(ByteReader& reader, Fields& fields);
    // The fields in words. Further lines begin with "\n ".
    std::string (*show)(const Fields& fields);
};

extern const AnswerForm kDoneForm; // a result head, followed by nothing worth reading
extern const AnswerForm kEmptyForm;
extern const AnswerForm kLoginForm;
extern const AnswerForm kSystemInfoForm;
extern const AnswerForm kBasicConfigForm;
extern const AnswerForm kLayoutForm;
extern const AnswerForm kWindowConfigForm;
extern const AnswerForm kAudioForm;
extern const AnswerForm kGroupsForm;

} // namespace standin_host
