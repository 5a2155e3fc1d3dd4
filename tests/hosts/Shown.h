/* What the hosts of this folder have in common: the component shown on the connection object of the page for host
 * authors, with the host's own clock counting meanwhile. */
#ifndef ZUL_TESTS_HOSTS_SHOWN_H
#define ZUL_TESTS_HOSTS_SHOWN_H

#define main example_main
#include "docs/examples/embed/host.c"
#undef main

#include <stdlib.h>

/* Shows the main window and returns when it closes; ends the program with 1 where it cannot be shown. */
static void showMainWindow(void)
{
    CLSID clsid;
    _SmsCreator* component = NULL;
    CoInitialize(NULL);
    if (FAILED(CLSIDFromProgID(u"Zul_MessageBuilder.SmsCreator", &clsid)) ||
        FAILED(CoCreateInstance(&clsid, NULL, CLSCTX_INPROC_SERVER, &IID__SmsCreator, (void**)&component))) {
        fputs("The component cannot be created.\n", stderr);
        exit(1);
    }
    VARIANT nothing;
    VariantInit(&nothing);
    VARIANT_BOOL yes = VARIANT_TRUE, no = VARIANT_FALSE;
    _SmsCreator_InitWhatToShow(component, &yes, &yes, &no, &nothing);
    _SqlConnection* given = &host;
    BSTR folder = SysAllocString(u"/opt/example");
    if (FAILED(_SmsCreator_ShowForm(component, &given, &folder, &no, &nothing))) {
        fputs("ShowForm failed.\n", stderr);
        exit(1);
    }
    SysFreeString(folder);
    _SmsCreator_DiscardForm(component, &nothing);
    _SmsCreator_Release(component);
    CoUninitialize();
}

/* Says what the host's own loop and window did while the component's window was shown, and judges it. */
static int told(int ticks, int drawn)
{
    printf("ticks %d, drawn %d\n", ticks, drawn);
    return ticks >= 10 && drawn >= 5 ? 0 : 1;
}

#endif
