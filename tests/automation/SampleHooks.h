// What the sample component does at its entry points beyond its work, as a test told it.
#pragma once

enum class SampleEntry
{
    GetClassObject, // before the class object is made
    CanUnloadNow    // when the answer stands, before it is given
};

using SampleHook = void (*)(SampleEntry entry);

// Exported by the component under this name. Null takes the hook away.
using SetSampleHook = void (*)(SampleHook hook);
