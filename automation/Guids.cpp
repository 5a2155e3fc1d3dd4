// The one place of a library or program where the interface ids are defined.
#define INITGUID
#include <guiddef.h>

#include <objbase.h>
#include <ocidl.h>

#include <Zul_Controls.h>
#include <Zul_Host.h>
#include <Zul_MessageBuilder.h>
#include <Zul_SQL.h>
