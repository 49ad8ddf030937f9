// The processor's identification, read with the CPUID instruction: the same on every x86 system.
#include "platform/ZoOS.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

#include <cstring>

namespace ZoOS {

namespace {

std::string trimmed(const std::string& text)
{
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

bool GetProcessorIdentification(std::string& vendorId, std::string& brand, uint32_t& signature)
{
    vendorId.clear();
    brand.clear();
    signature = 0;
#if defined(__x86_64__) || defined(__i386__)
    unsigned int eax = 0;
    unsigned int ebx = 0;
    unsigned int ecx = 0;
    unsigned int edx = 0;
    if (!__get_cpuid(0, &eax, &ebx, &ecx, &edx))
        return false;
    // The vendor id is spread over three registers in the order EBX, EDX, ECX.
    char vendor[13] = {0};
    std::memcpy(vendor, &ebx, 4);
    std::memcpy(vendor + 4, &edx, 4);
    std::memcpy(vendor + 8, &ecx, 4);
    vendorId = vendor;
    if (eax >= 1 && __get_cpuid(1, &eax, &ebx, &ecx, &edx))
        signature = eax;
    // The brand text takes three extended leaves of 16 characters each.
    unsigned int highestExtended = 0;
    if (__get_cpuid(0x80000000u, &highestExtended, &ebx, &ecx, &edx) && highestExtended >= 0x80000004u) {
        char text[49] = {0};
        for (unsigned int leaf = 0; leaf < 3; ++leaf) {
            unsigned int registers[4] = {0, 0, 0, 0};
            __get_cpuid(0x80000002u + leaf, &registers[0], &registers[1], &registers[2], &registers[3]);
            std::memcpy(text + 16 * leaf, registers, 16);
        }
        brand = trimmed(text);
    }
    return true;
#else
    return false;
#endif
}

} // namespace ZoOS
