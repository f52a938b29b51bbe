// SPDX-License-Identifier: Apache-2.0
//
// Gives libFuzzer the target of the name KORA_FUZZ_TARGET_NAME.
#include "fuzztarget.h"

#include <cstring>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size);

namespace {

void (*target)(const QByteArray &input) = nullptr;

} // namespace

int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    prepareFuzzing(*argc, *argv);
    for (const FuzzTarget &each : fuzzTargets()) {
        if (std::strcmp(each.name, KORA_FUZZ_TARGET_NAME) == 0) {
            target = each.run;
        }
    }
    expect(target, "no such target");
    return 0;
}

int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    // A copy of its own: reading beyond its end is a find.
    target(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return 0;
}
