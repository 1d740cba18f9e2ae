// What the language keeps for each thread that threw. Windows only.
#pragma once

// Gives back the slot and the memory of every thread, before the module is unloaded. Nothing may be thrown
// afterwards. Safe under the loader lock; not to be called when the process ends, which has stopped the other
// threads wherever they were.
void ReleaseExceptionState() noexcept;
