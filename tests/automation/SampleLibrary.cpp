// A shared library without the entry points of a component.
extern "C" __attribute__((visibility("default"))) int zulSampleLibrary();

extern "C" int zulSampleLibrary()
{
    return 1;
}
