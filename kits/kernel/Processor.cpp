// What a processor tells of itself. Any thread.

#include <OS.h>

#include <sched.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>

// Keeps the calling thread on one processor, where it may go there; else any speaks for all.
class OnProcessor {
public:
    explicit OnProcessor(uint32 number)
    {
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(number, &one);
        fHeld = sched_getaffinity(0, sizeof(fFormer), &fFormer) == 0 &&
                sched_setaffinity(0, sizeof(one), &one) == 0;
    }
    ~OnProcessor()
    {
        if (fHeld)
            sched_setaffinity(0, sizeof(fFormer), &fFormer);
    }
    OnProcessor(const OnProcessor&) = delete;

private:
    cpu_set_t fFormer;
    bool fHeld;
};

status_t get_cpuid(cpuid_info* info, uint32 eaxRegister, uint32 cpuNum)
{
    const uint32 count = static_cast<uint32>(std::max(sysconf(_SC_NPROCESSORS_CONF), 1L));
    if (info == nullptr || cpuNum >= std::min<uint32>(count, CPU_SETSIZE))
        return B_BAD_VALUE;
    const OnProcessor place(cpuNum);
    unsigned eax, ebx, ecx, edx;
    if (__get_cpuid_count(eaxRegister, 0, &eax, &ebx, &ecx, &edx) == 0)
        return B_BAD_VALUE;
    memset(info, 0, sizeof(*info));
    if (eaxRegister != 0) {
        info->regs = {eax, ebx, edx, ecx};
        return B_OK;
    }
    const unsigned maker[] = {ebx, edx, ecx};
    info->eax_0.max_eax = eax;
    memcpy(info->eax_0.vendor_id, maker, sizeof(maker));
    return B_OK;
}

#else

status_t get_cpuid(cpuid_info* info, uint32, uint32)
{
    return info == nullptr ? B_BAD_VALUE : B_UNSUPPORTED;
}

#endif
