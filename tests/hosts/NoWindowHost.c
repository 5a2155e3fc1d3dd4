/* What the component costs a host that never shows a window, and whether it gives everything back: time to the first
 * object, memory, libraries mapped.
 *
 *   NoWindowHost    prints a line, and ends with 1 where the component stays loaded */
#define INITGUID
#define COBJMACROS
#include <Zul_MessageBuilder.h>
#include <objbase.h>
#include <oleauto.h>

#include <stdio.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

struct State
{
    double milliseconds, megabytes;
    int libraries, component;
};

static struct State now(void)
{
    struct State state = {0, 0, 0, 0};
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    state.milliseconds = (double)time.tv_sec * 1e3 + (double)time.tv_nsec / 1e6;
    long total = 0, resident = 0;
    FILE* file = fopen("/proc/self/statm", "r");
    if (file != NULL && fscanf(file, "%ld %ld", &total, &resident) == 2) {
        state.megabytes = (double)resident * (double)sysconf(_SC_PAGESIZE) / 1e6;
    }
    if (file != NULL) {
        fclose(file);
    }
    char line[4096], last[4096] = "";
    file = fopen("/proc/self/maps", "r");
    while (file != NULL && fgets(line, sizeof line, file) != NULL) {
        const char* path = strchr(line, '/');
        if (path != NULL && strstr(path, ".so") != NULL && strcmp(path, last) != 0) {
            strcpy(last, path);
            ++state.libraries;
            state.component |= strstr(path, "libZul_MessageBuilder") != NULL;
        }
    }
    if (file != NULL) {
        fclose(file);
    }
    return state;
}

int main(void)
{
    CoInitialize(NULL);
    const struct State before = now();
    CLSID clsid;
    _SmsCreator* component = NULL;
    if (FAILED(CLSIDFromProgID(u"Zul_MessageBuilder.SmsCreator", &clsid)) ||
        FAILED(CoCreateInstance(&clsid, NULL, CLSCTX_INPROC_SERVER, &IID__SmsCreator, (void**)&component))) {
        fputs("The component cannot be created.\n", stderr);
        return 1;
    }
    VARIANT_BOOL ok = VARIANT_TRUE;
    _SmsCreator_put_idUtente(component, 7);
    _SmsCreator_isOkPressed(component, &ok);
    const struct State created = now();
    _SmsCreator_Release(component);
    CoFreeUnusedLibraries();
    const struct State after = now();
    printf("object %.1f ms, %.1f MB and %d libraries more; given back: %s, %.1f MB and %d libraries stay\n",
           created.milliseconds - before.milliseconds, created.megabytes - before.megabytes,
           created.libraries - before.libraries, after.component ? "no" : "yes", after.megabytes - before.megabytes,
           after.libraries - before.libraries);
    CoUninitialize();
    return after.component || ok != VARIANT_FALSE ? 1 : 0;
}
