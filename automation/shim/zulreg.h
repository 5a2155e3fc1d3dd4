// What the runtime exports beyond the standard names: the registration file of the user.
//
// The file is $ZUL_AUTOMATION_REGISTRY, or Zul/automation-classes.ini in $XDG_DATA_HOME (~/.local/share where
// that is not set). It has one section per class:
//
//   [{B7A0C731-6521-48C8-8DA9-B7465A7FF35B}]
//   ProgID=Zul_MessageBuilder.SmsCreator
//   Description=The customer-messaging component
//   Library=/opt/zul/lib/libZul_MessageBuilder.so
//
// Classes for all users stand in the files *.ini of /etc/zul-automation ($ZUL_AUTOMATION_SYSTEM_REGISTRY names another
// folder), in the same form, read in the order of their names. The user's own entry for a class or a ProgID comes
// first. Only an administrator or a package writes there; the functions below change the user's file alone.
//
// A new file in the user's own folder is readable by the user alone; who may read a file stays as it is when it is
// changed.
#pragma once
#pragma GCC system_header
#include <objbase.h>

// Writes the class into the file; what the file held of it before is replaced, other entries stay as they are.
// The new file takes the old one's place in one step. progId and description may be null; the path is
// absolute, in UTF-8. E_INVALIDARG for a path that is not absolute, for a line break or control character in a
// text, for a blank at an end of the ProgID or the path, or for a ProgID that another class has; REGDB_E_WRITEREGDB when
// the file cannot be written. Of a description the blanks at its ends are lost.
STDAPI ZulRegisterClass(REFCLSID clsid, LPCOLESTR progId, LPCOLESTR description, const char* libraryPath);

// Takes the class out of the file. S_OK also when it was not there.
STDAPI ZulUnregisterClass(REFCLSID clsid);
