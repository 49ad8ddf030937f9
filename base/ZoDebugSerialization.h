/// @class ZoDebugSerialization
/// ZoDebugSerialization: the companion that writes objects' state as named text values while
/// debugging. Each instance has a name (the object or module being dumped); values are written as
/// "instance.variable = value" lines, whole lines under one process-wide lock so that several
/// threads' dumps never interleave. Variable names are built the library's way: an element
/// "values[3]", a numbered item "node(7)". Dump file names are put together from their parts with
/// the seven characters that cannot stand in them (| " ? * > ] <) replaced by '_'.
/// @ingroup diagnostics
#pragma once

#include "base/ZoCriticalSection.h"
#include "base/ZoStreamWrite.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

class ZO_API ZoDebugSerialization
{
public:
    /// `instanceName` prefixes every line written and every file name made, as given (file names get
    /// it made allowed).
    explicit ZoDebugSerialization(const CString& instanceName);

    /// The name given at construction.
    const CString& GetInstanceName() const { return m_instanceName; }

    /// The lock every dump line is written under; made when the library loads.
    static ZoCriticalSection& GetCriticalSection();

    /// "name[index]", the variable name of an array element.
    static CString ElementName(const CString& name, int index);
    /// "name(number)", the variable name of a numbered item.
    static CString NumberedName(const CString& name, int number);
    /// False for the seven characters that cannot stand in a dump file name: | " ? * > ] <.
    static bool IsAllowedInName(char16_t character);
    /// The name with every character that is not allowed replaced by '_'.
    static CString MakeName(const CString& name);

    /// folder + instance "_" object "_" variable "." extension, each name part made allowed.
    /// `folder` is used as given (with its trailing separator).
    CString GetFileName(const CString& folder, const CString& objectName, const CString& variableName,
                        const CString& extension) const;

    /// Writes "instance.variable = value" and a line break to the stream.
    void Write(ZoStreamWrite& stream, const CString& variableName, const CString& value) const;

private:
    CString m_instanceName;
};
