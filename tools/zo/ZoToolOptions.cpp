// zo options: persistent options, read, written and removed by category, key and name.
#include "ZoTool.h"

#include "base/ZoPersistentOptions.h"

namespace zotool {

namespace {

const char sc_help[] =
    "usage: zo options get CATEGORY KEY NAME [--type dword|string]\n"
    "       zo options set CATEGORY KEY NAME [--type dword|string] VALUE\n"
    "       zo options delete CATEGORY KEY NAME\n"
    "\n"
    "CATEGORY is the root the key path is taken from: classes-root, current-user, local-machine,\n"
    "users or current-config (or its number 0 .. 4). KEY is a path such as Software\\\\Example.\n"
    "--type is string unless told: a dword is a 32-bit number (set takes -2147483648 ..\n"
    "4294967295; get prints it unsigned).\n"
    "On Windows the options live in the registry; elsewhere in the user's options database.\n";

const uint32_t sc_maximumText = 1u << 16;

struct Category
{
    const char* name;
    const char* rootName;
    ZoPersistentOptions::EPersistentOptionsCategory value;
};

const Category sc_categories[] = {
    {"classes-root", "HKEY_CLASSES_ROOT", ZoPersistentOptions::eClassesRoot},
    {"current-user", "HKEY_CURRENT_USER", ZoPersistentOptions::eCurrentUser},
    {"local-machine", "HKEY_LOCAL_MACHINE", ZoPersistentOptions::eLocalMachine},
    {"users", "HKEY_USERS", ZoPersistentOptions::eUsers},
    {"current-config", "HKEY_CURRENT_CONFIG", ZoPersistentOptions::eCurrentConfig},
};

ZoPersistentOptions::EPersistentOptionsCategory categoryOf(const CString& text)
{
    const std::string name = Narrow(text);
    for (const Category& category : sc_categories) {
        if (name == category.name || name == category.rootName || name == std::to_string(category.value))
            return category.value;
    }
    throw UserError(text, "unknown category (classes-root, current-user, local-machine, users or current-config)");
}

// A dword as the user writes it: a decimal number, negative ones stored as their 32-bit pattern.
uint32_t dwordOf(const CString& text)
{
    const std::string digits = Narrow(text);
    const bool negative = !digits.empty() && digits[0] == '-';
    const uint64_t magnitude = ParseCount("options", "a dword VALUE", CString::FromUtf8(digits.data() + negative,
                                                                                         digits.size() - negative));
    if (magnitude > (negative ? 0x80000000u : 0xFFFFFFFFu))
        throw UsageError("options", "dword " + digits + " is out of the 32-bit range");
    return negative ? static_cast<uint32_t>(0 - magnitude) : static_cast<uint32_t>(magnitude);
}

} // namespace

int RunOptions(const Arguments& arguments)
{
    if (WantsHelp(arguments)) {
        Print(sc_help);
        return 0;
    }
    const SplitArguments split = Split("options", arguments, {"--type"});
    const Arguments& words = split.positional;
    const std::string action = words.empty() ? std::string() : Narrow(words[0]);
    if (action != "get" && action != "set" && action != "delete")
        throw UsageError("options", action.empty() ? "name an action: get, set or delete"
                                                   : "unknown action \"" + action + "\"");
    const size_t expected = action == "set" ? 5 : 4;
    if (words.size() != expected)
        throw UsageError("options", action + (action == "set" ? " takes CATEGORY KEY NAME VALUE"
                                                              : " takes CATEGORY KEY NAME"));
    const std::string type = split.Has("--type") ? Narrow(split.options.at("--type")) : "string";
    if (type != "dword" && type != "string")
        throw UsageError("options", "--type takes dword or string, not \"" + type + "\"");
    if (action == "delete" && split.Has("--type"))
        throw UsageError("options", "delete takes no --type");
    const ZoPersistentOptions::EPersistentOptionsCategory category = categoryOf(words[1]);
    const CString& key = words[2];
    const CString& name = words[3];
    const CString place = key + u" " + name;
    if (action == "get") {
        if (type == "dword") {
            uint32_t value = 0;
            if (!ZoPersistentOptions::ReadOption(key, name, value, category))
                throw UserError(place, "no such dword value");
            Print(std::to_string(value) + "\n");
        } else {
            CString value;
            if (!ZoPersistentOptions::ReadOption(key, name, value, sc_maximumText, category))
                throw UserError(place, "no such text value (or one longer than 65536 characters)");
            Print(Narrow(value) + "\n");
        }
        return 0;
    }
    if (action == "set") {
        const int written = type == "dword" ? ZoPersistentOptions::WriteOption(key, name, dwordOf(words[4]), category)
                                            : ZoPersistentOptions::WriteOption(key, name, words[4], category);
        if (!written)
            throw UserError(place, "cannot be written");
        return 0;
    }
    if (!ZoPersistentOptions::DeleteOption(key, name, category))
        throw UserError(place, "no such value to delete");
    return 0;
}

} // namespace zotool
