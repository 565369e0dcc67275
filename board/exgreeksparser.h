// Reads the text of one external Greeks file into records. The BSON reader
// behind it recurses without bound and is lenient (trailing text, hex, NaN,
// invalid UTF-8 all pass), so the text is checked first against strict JSON
// with a depth and size limit, and the records after, field by field. Pure:
// no file, no log, no thread; the import thread and the fuzz target call it.
#pragma once

#include "seam/user.h"

#include <cstddef>
#include <string>

namespace TC {

// What parseOptionExGreeksText gives back, in the numbers the import uses.
enum EExGreeksParseResult {
    EGPR_BAD = 1,   // nothing taken from the text
    EGPR_GOOD = 2,  // every record of the text taken
};

// Largest file taken: a full chain of a few thousand options is well below it.
constexpr std::size_t kMaxExGreeksTextBytes = 8u * 1024u * 1024u;
// Deepest nesting of arrays and objects in a file: records need two levels;
// the rest is room for fields of the writer's own. Far below what would
// exhaust a thread's stack in the recursive reader.
constexpr int kMaxExGreeksDepth = 32;

// Checks raw file bytes (a leading UTF-8 byte order mark allowed) against
// strict JSON: UTF-8 throughout, no control characters in strings, surrogate
// escapes only as whole pairs, no \u0000 in a key, decimal numbers only,
// integers within 64 bits, no key beginning with '$' (the reader would take it
// as a typed value), nothing after the value, nesting no deeper than maxDepth,
// size no larger than maxBytes.
// False with reason set when the text fails.
bool checkExGreeksJson(const char* data, std::size_t size, std::string* reason = nullptr,
                       int maxDepth = kMaxExGreeksDepth, std::size_t maxBytes = kMaxExGreeksTextBytes);

// The text the BSON reader is given: it accepts only an object at the top.
std::string wrapExGreeksText(const std::string& text);

// Parses the bytes of one file. The value is an array, or an object whose
// members are walked the same way; each object in it is one record, anything
// else an empty record under the empty code. In a record "code" must be a
// string and each Greek a finite number or null (left absent); a field named
// twice fails the file. Records go into harvest by their code in file order,
// so a later record of a code wins. A text that is not strict JSON (see
// checkExGreeksJson) gives EGPR_BAD with nothing taken; a record that fails
// gives EGPR_BAD with the records before it taken. reason tells why. Runs the
// reader under the C numeric locale. Never throws.
int parseOptionExGreeksText(const char* data, std::size_t size, OptionExGreeksMap& harvest,
                            std::string* reason = nullptr);

}  // namespace TC
