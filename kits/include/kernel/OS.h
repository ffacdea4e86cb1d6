#ifndef _OS_H
#define _OS_H

#include <stdarg.h>

#include <SupportDefs.h>

// Bytes of a name with its end.
#define B_OS_NAME_LENGTH 32

// Waits without limit.
#define B_INFINITE_TIMEOUT 0x7FFFFFFFFFFFFFFF

// What areas are measured in, bytes.
#define B_PAGE_SIZE 0x1000

// How an area is kept in memory. The host decides that itself: it is remembered only.
#define B_NO_LOCK 0
#define B_LAZY_LOCK 1
#define B_FULL_LOCK 2
#define B_CONTIGUOUS 3
#define B_LOMEM 4
#define B_32_BIT_FULL_LOCK 5
#define B_32_BIT_CONTIGUOUS 6

// Where an area goes: anywhere, at the address, at it or elsewhere, at the address of its source.
#define B_ANY_ADDRESS 0
#define B_EXACT_ADDRESS 1
#define B_BASE_ADDRESS 2
#define B_CLONE_ADDRESS 3
#define B_ANY_KERNEL_ADDRESS 4
#define B_RANDOMIZED_ANY_ADDRESS 6
#define B_RANDOMIZED_BASE_ADDRESS 7

// What may be done with an area's memory.
#define B_READ_AREA 1
#define B_WRITE_AREA 2
#define B_EXECUTE_AREA 4
#define B_STACK_AREA 8
#define B_CLONEABLE_AREA 0x100

// Teams that are not told by an id of their own.
#define B_CURRENT_TEAM 0
#define B_SYSTEM_TEAM 1

// Priorities of threads.
#define B_IDLE_PRIORITY 0
#define B_LOWEST_ACTIVE_PRIORITY 1
#define B_LOW_PRIORITY 5
#define B_NORMAL_PRIORITY 10
#define B_DISPLAY_PRIORITY 15
#define B_URGENT_DISPLAY_PRIORITY 20
#define B_REAL_TIME_DISPLAY_PRIORITY 100
#define B_URGENT_PRIORITY 110
#define B_REAL_TIME_PRIORITY 120
#define B_FIRST_REAL_TIME_PRIORITY 100

// The clock that snooze_until() goes by: that of system_time().
#define B_SYSTEM_TIMEBASE 0

// How long a wait lasts; without either of the first two it has no limit. What may end it besides.
enum {
    B_TIMEOUT = 8,  // the same as the next
    B_RELATIVE_TIMEOUT = 8,
    B_ABSOLUTE_TIMEOUT = 16,
    B_TIMEOUT_REAL_TIME_BASE = 64,  // of real_time_clock_usecs(), else of system_time()
    B_ABSOLUTE_REAL_TIME_TIMEOUT = 80,
    B_CAN_INTERRUPT = 1,  // a signal
    B_CHECK_PERMISSION = 4,
    B_KILL_CAN_INTERRUPT = 32
};

// How semaphores are released.
enum {
    B_DO_NOT_RESCHEDULE = 2,
    B_RELEASE_ALL = 8,              // as many units as the waiting threads lack
    B_RELEASE_IF_WAITING_ONLY = 16  // no more than these
};

// Whose times are asked for.
enum { B_TEAM_USAGE_SELF = 0, B_TEAM_USAGE_CHILDREN = 0xFFFFFFFF };

// Kinds of alarms.
enum { B_ONE_SHOT_ABSOLUTE_ALARM = 1, B_ONE_SHOT_RELATIVE_ALARM = 2, B_PERIODIC_ALARM = 3 };

// What wait_for_objects() waits for.
enum {
    B_OBJECT_TYPE_FD = 0,
    B_OBJECT_TYPE_SEMAPHORE = 1,
    B_OBJECT_TYPE_PORT = 2,
    B_OBJECT_TYPE_THREAD = 3
};

// Until this holds. Errors, ends and ids of nothing are told unasked.
enum {
    B_EVENT_READ = 1,   // of a port: there is a message
    B_EVENT_WRITE = 2,  // of a port: there is room for one
    B_EVENT_ERROR = 4,
    B_EVENT_PRIORITY_READ = 8,
    B_EVENT_PRIORITY_WRITE = 16,
    B_EVENT_HIGH_PRIORITY_READ = 32,
    B_EVENT_HIGH_PRIORITY_WRITE = 64,
    B_EVENT_DISCONNECTED = 128,
    B_EVENT_ACQUIRE_SEMAPHORE = 1,
    B_EVENT_INVALID = 0x1000  // of a thread: it has ended
};

// What the nodes of the processors' topology are.
enum topology_level_type {
    B_TOPOLOGY_UNKNOWN = 0,
    B_TOPOLOGY_ROOT = 1,
    B_TOPOLOGY_SMT = 2,
    B_TOPOLOGY_CORE = 3,
    B_TOPOLOGY_PACKAGE = 4
};

// Kinds of processors, and who makes them.
enum cpu_platform {
    B_CPU_UNKNOWN = 0,
    B_CPU_x86 = 1,
    B_CPU_x86_64 = 2,
    B_CPU_PPC = 3,
    B_CPU_PPC_64 = 4,
    B_CPU_M68K = 5,
    B_CPU_ARM = 6,
    B_CPU_ARM_64 = 7,
    B_CPU_ALPHA = 8,
    B_CPU_MIPS = 9,
    B_CPU_SH = 10,
    B_CPU_SPARC = 11,
    B_CPU_RISC_V = 12
};

enum cpu_vendor {
    B_CPU_VENDOR_UNKNOWN = 0,
    B_CPU_VENDOR_AMD = 1,
    B_CPU_VENDOR_CYRIX = 2,
    B_CPU_VENDOR_IDT = 3,
    B_CPU_VENDOR_INTEL = 4,
    B_CPU_VENDOR_NATIONAL_SEMICONDUCTOR = 5,
    B_CPU_VENDOR_RISE = 6,
    B_CPU_VENDOR_TRANSMETA = 7,
    B_CPU_VENDOR_VIA = 8,
    B_CPU_VENDOR_IBM = 9,
    B_CPU_VENDOR_MOTOROLA = 10,
    B_CPU_VENDOR_NEC = 11,
    B_CPU_VENDOR_HYGON = 12,
    B_CPU_VENDOR_SUN = 13,
    B_CPU_VENDOR_FUJITSU = 14
};

typedef int32 area_id;
typedef int32 port_id;
typedef int32 sem_id;
typedef int32 team_id;    // the host's process
typedef int32 thread_id;  // the host's thread

struct area_info {
    area_id area;
    char name[32];
    size_t size;
    uint32 lock;
    uint32 protection;
    team_id team;
    uint32 ram_size;
    uint32 copy_count;
    uint32 in_count;
    uint32 out_count;
    void* address;
};

struct port_info {
    port_id port;
    team_id team;
    char name[32];
    int32 capacity;
    int32 queue_count;  // messages that wait
    int32 total_count;  // that were read
};

struct port_message_info {
    size_t size;
    uid_t sender;
    gid_t sender_group;
    team_id sender_team;
};

struct sem_info {
    sem_id sem;
    team_id team;
    char name[32];
    int32 count;  // below 0: what the waiting threads want
    thread_id latest_holder;
};

struct team_info {
    team_id team;
    int32 thread_count;
    int32 image_count;
    int32 area_count;
    thread_id debugger_nub_thread;
    port_id debugger_nub_port;
    int32 argc;
    char args[64];  // the program and its arguments, cut off
    uid_t uid;
    gid_t gid;
    uid_t real_uid;
    gid_t real_gid;
    pid_t group_id;
    pid_t session_id;
    team_id parent;
    char name[32];
    bigtime_t start_time;
};

// Microseconds.
struct team_usage_info {
    bigtime_t user_time;
    bigtime_t kernel_time;
};

enum thread_state {
    B_THREAD_RUNNING = 1,
    B_THREAD_READY = 2,
    B_THREAD_RECEIVING = 3,
    B_THREAD_ASLEEP = 4,
    B_THREAD_SUSPENDED = 5,
    B_THREAD_WAITING = 6
};

struct thread_info {
    thread_id thread;
    team_id team;
    char name[32];
    thread_state state;
    int32 priority;
    sem_id sem;  // that it waits for, or -1
    bigtime_t user_time;
    bigtime_t kernel_time;
    void* stack_base;
    void* stack_end;
};

typedef status_t (*thread_func)(void*);
typedef thread_func thread_entry;  // its name in older programs

struct cpu_info {
    bigtime_t active_time;  // microseconds
    bool enabled;
    uint64 current_frequency;  // hertz
};

struct system_info {
    bigtime_t boot_time;  // microseconds since 1970
    uint32 cpu_count;
    uint64 max_pages;
    uint64 used_pages;
    uint64 cached_pages;
    uint64 block_cache_pages;
    uint64 ignored_pages;
    uint64 needed_memory;
    uint64 free_memory;
    uint64 max_swap_pages;
    uint64 free_swap_pages;
    uint32 page_faults;
    uint32 max_sems;
    uint32 used_sems;
    uint32 max_ports;
    uint32 used_ports;
    uint32 max_threads;
    uint32 used_threads;
    uint32 max_teams;
    uint32 used_teams;
    char kernel_name[256];
    char kernel_build_date[32];
    char kernel_build_time[32];
    int64 kernel_version;
    uint32 abi;
};

struct cpu_topology_root_info {
    cpu_platform platform;
};

struct cpu_topology_package_info {
    cpu_vendor vendor;
    uint32 cache_line_size;
};

struct cpu_topology_core_info {
    uint32 model;
    uint64 default_frequency;
};

// What a processor tells of itself, by the number asked for.
union cpuid_info {
    struct {
        uint32 max_eax;
        char vendor_id[12];
    } eax_0;
    struct {
        uint32 stepping : 4;
        uint32 model : 4;
        uint32 family : 4;
        uint32 type : 2;
        uint32 reserved_0 : 2;
        uint32 extended_model : 4;
        uint32 extended_family : 8;
        uint32 reserved_1 : 4;
        uint32 brand_index : 8;
        uint32 clflush : 8;
        uint32 logical_cpus : 8;
        uint32 apic_id : 8;
        uint32 features;
        uint32 extended_features;
    } eax_1;
    struct {
        uint8 call_num;
        uint8 cache_descriptors[15];
    } eax_2;
    struct {
        uint32 reserved[2];
        uint32 serial_number_high;
        uint32 serial_number_low;
    } eax_3;
    char as_chars[16];
    struct {
        uint32 eax;
        uint32 ebx;
        uint32 edx;
        uint32 ecx;
    } regs;
};

struct object_wait_info {
    int32 object;   // an id, or a file's descriptor
    uint16 type;    // B_OBJECT_TYPE_...
    uint16 events;  // in: waited for; out: what holds
};

extern "C" {

/* Everything here may be called on any thread. Ids that are none are told by the family's own
   status, null pointers and numbers out of range by B_BAD_VALUE. The functions that begin with an
   underscore are called by the macros below. Of other teams the host tells threads and teams;
   areas, ports and semaphores are this team's. */

/* Areas: memory in whole pages. B_BAD_VALUE for an id that is none.
   create_area() maps `size` bytes, zero at first, where `addressSpec` and `*startAddress` say, and
   puts the address there; answers the id, B_BAD_VALUE, or B_NO_MEMORY, for an exact address that is
   taken, too. clone_area() shows the memory of another area once more. delete_area() takes it away
   at once. resize_area() leaves it where it is: B_NO_MEMORY if there is no room behind it. */
area_id create_area(const char* name, void** startAddress, uint32 addressSpec, size_t size,
                    uint32 lock, uint32 protection);
area_id clone_area(const char* name, void** destAddress, uint32 addressSpec, uint32 protection,
                   area_id source);
area_id find_area(const char* name);  // B_NAME_NOT_FOUND
area_id area_for(void* address);      // B_ERROR in no area
status_t delete_area(area_id id);
status_t resize_area(area_id id, size_t newSize);
status_t set_area_protection(area_id id, uint32 newProtection);
status_t _get_area_info(area_id id, area_info* areaInfo, size_t size);
// The cookie begins with 0; B_BAD_VALUE after the last, B_BAD_TEAM_ID for other teams.
status_t _get_next_area_info(team_id team, ssize_t* cookie, area_info* areaInfo, size_t size);

/* Ports: queues of messages, a code and up to 256 KB each. B_BAD_PORT_ID for an id that is none, or
   no longer.
   create_port() takes a capacity from 1 to 4096 messages; B_NO_MORE_PORTS. Reading waits for a
   message, writing for room: for ever, or for `timeout` microseconds, see B_RELATIVE_TIMEOUT:
   B_TIMED_OUT, and B_WOULD_BLOCK for a relative one of 0. Reading answers how many bytes came; what
   does not fit into the buffer is lost. A closed port can be read until it is empty, but no more
   written. Deleting wakes all who wait. */
port_id create_port(int32 capacity, const char* name);
port_id find_port(const char* name);  // B_NAME_NOT_FOUND
ssize_t read_port(port_id port, int32* code, void* buffer, size_t bufferSize);
ssize_t read_port_etc(port_id port, int32* code, void* buffer, size_t bufferSize, uint32 flags,
                      bigtime_t timeout);
status_t write_port(port_id port, int32 code, const void* buffer, size_t bufferSize);
status_t write_port_etc(port_id port, int32 code, const void* buffer, size_t bufferSize,
                        uint32 flags, bigtime_t timeout);
status_t close_port(port_id port);
status_t delete_port(port_id port);
// Bytes of the next message; waits for one as reading does.
ssize_t port_buffer_size(port_id port);
ssize_t port_buffer_size_etc(port_id port, uint32 flags, bigtime_t timeout);
ssize_t port_count(port_id port);  // messages that wait
// Ports stay with their team: B_BAD_TEAM_ID for another.
status_t set_port_owner(port_id port, team_id team);
status_t _get_port_info(port_id port, port_info* portInfo, size_t portInfoSize);
// The cookie begins with 0; B_BAD_PORT_ID after the last, B_BAD_TEAM_ID for other teams.
status_t _get_next_port_info(team_id team, int32* cookie, port_info* portInfo, size_t portInfoSize);
status_t _get_port_message_info_etc(port_id port, port_message_info* info, size_t infoSize,
                                    uint32 flags, bigtime_t timeout);

/* Semaphores: counts of units that threads take and give back. B_BAD_SEM_ID for an id that is none,
   or no longer.
   create_sem() begins with `count` units, not below 0; B_NO_MORE_SEMS. Acquiring takes `count`
   units, one at least, or waits for them: for ever, or for `timeout` microseconds: B_TIMED_OUT, and
   B_WOULD_BLOCK for a relative one of 0; B_INTERRUPTED by a signal with B_CAN_INTERRUPT. Threads
   are served in the order of their coming, and one that wants much is not passed over. Releasing
   gives `count` units back, B_BAD_VALUE beyond what a count can hold. Deleting wakes all who wait.
   switch_sem() releases the first semaphore and acquires the second one; it releases none if there
   is no second one. */
sem_id create_sem(int32 count, const char* name);
status_t delete_sem(sem_id id);
status_t acquire_sem(sem_id id);
status_t acquire_sem_etc(sem_id id, int32 count, uint32 flags, bigtime_t timeout);
status_t release_sem(sem_id id);
status_t release_sem_etc(sem_id id, int32 count, uint32 flags);
status_t switch_sem(sem_id semToBeReleased, sem_id id);
status_t switch_sem_etc(sem_id semToBeReleased, sem_id id, int32 count, uint32 flags,
                        bigtime_t timeout);
// Units that are free; below 0: how many the waiting threads want.
status_t get_sem_count(sem_id id, int32* threadCount);
// Semaphores stay with their team: B_BAD_TEAM_ID for another.
status_t set_sem_owner(sem_id id, team_id team);
status_t _get_sem_info(sem_id id, sem_info* info, size_t infoSize);
// The cookie begins with 0; B_BAD_VALUE after the last, B_BAD_TEAM_ID for other teams.
status_t _get_next_sem_info(team_id team, int32* cookie, sem_info* info, size_t infoSize);

/* Teams: the host's processes. B_BAD_TEAM_ID for an id that is none. kill_team() ends one at once,
   as far as the user may: B_BAD_TEAM_ID, and B_NOT_ALLOWED for the system's own. */
status_t kill_team(team_id team);
status_t _get_team_info(team_id id, team_info* info, size_t size);
// The cookie begins with 0; B_BAD_VALUE after the last.
status_t _get_next_team_info(int32* cookie, team_info* info, size_t size);
status_t _get_team_usage_info(team_id team, int32 who, team_usage_info* info, size_t size);

/* Threads. B_BAD_THREAD_ID for an id that is none, or no longer.
   spawn_thread() makes one that calls `entry` with `data` once it is resumed, and ends with its
   result; B_NO_MORE_THREADS. kill_thread() ends one at its next wait in a call of this kit, its
   stack unwound; the main thread takes the team along. suspend_thread() stops one where it is until
   resume_thread(), which answers B_BAD_THREAD_STATE for one that runs. set_thread_priority()
   answers the former priority; the number is remembered, and given to the host as far as the user
   may. exit_thread() ends the calling thread, its stack unwound; the main thread takes the team
   along. */
thread_id spawn_thread(thread_func, const char* name, int32 priority, void* data);
status_t kill_thread(thread_id thread);
status_t resume_thread(thread_id thread);
status_t suspend_thread(thread_id thread);
status_t rename_thread(thread_id thread, const char* newName);
status_t set_thread_priority(thread_id thread, int32 newPriority);
void exit_thread(status_t status);
/* Wait until a thread has ended, which is resumed if it never ran, and tell its result. Of one that
   ended before, the first who asks is told. B_INTERRUPTED if it was killed. With a timeout,
   B_TIMED_OUT, and B_WOULD_BLOCK for one of 0. */
status_t wait_for_thread(thread_id thread, status_t* returnValue);
status_t wait_for_thread_etc(thread_id id, uint32 flags, bigtime_t timeout, status_t* _returnCode);
// Is called when the calling thread ends, the last one first.
status_t on_exit_thread(void (*callback)(void*), void* data);
thread_id find_thread(const char* name);  // null: the caller; B_NAME_NOT_FOUND
/* A letter for a thread, one at a time: sending waits until the former was received, receiving
   until there is one. receive_data() answers its code; what does not fit into the buffer is
   lost. */
status_t send_data(thread_id thread, int32 code, const void* buffer, size_t bufferSize);
int32 receive_data(thread_id* sender, void* buffer, size_t bufferSize);
bool has_data(thread_id thread);
/* Sleep, for or until microseconds. B_INTERRUPTED by a signal; B_BAD_VALUE for another clock than
   B_SYSTEM_TIMEBASE. */
status_t snooze(bigtime_t amount);
status_t snooze_etc(bigtime_t amount, int timeBase, uint32 flags);
status_t snooze_until(bigtime_t time, int timeBase);
status_t _get_thread_info(thread_id id, thread_info* info, size_t size);
// The cookie begins with 0; B_BAD_VALUE after the last.
status_t _get_next_thread_info(team_id team, int32* cookie, thread_info* info, size_t size);
thread_id get_pthread_thread_id(pthread_t thread);

/* Time. The real-time clock counts from 1970, system_time() from the machine's start and never
   back; microseconds but for those that say otherwise. Setting the clock needs the right to, and
   tells nothing. */
unsigned long real_time_clock();  // seconds
void set_real_time_clock(unsigned long secsSinceJan1st1970);
bigtime_t real_time_clock_usecs();
bigtime_t system_time();
nanotime_t system_time_nsecs();
/* Sends the calling thread a SIGALRM at or after a time, or again and again; B_INFINITE_TIMEOUT
   stops that. Answers how long the former alarm would have taken, or a status. */
bigtime_t set_alarm(bigtime_t when, uint32 flags);

/* Debugging: what is printed goes to standard error. debugger() prints its message and stops the
   team where a debugger holds it and disable_debugger() was not told another state, which answers
   the former one. The host keeps no trace: ktrace_printf() does nothing. */
void debugger(const char* message);
int disable_debugger(int state);
int debug_printf(const char* format, ...);
int debug_vprintf(const char* format, va_list args);
void ktrace_printf(const char* format, ...);
void ktrace_vprintf(const char* format, va_list args);

/* The machine. */
status_t get_system_info(system_info* info);
// Fills `info` for `cpuCount` processors from the first one on; B_BAD_VALUE beyond the last.
status_t _get_cpu_info_etc(uint32 firstCPU, uint32 cpuCount, cpu_info* info, size_t size);
// What the processor's own instruction tells under that number; B_BAD_VALUE for a processor that
// there is not and for numbers that it does not know, B_UNSUPPORTED where it has none.
status_t get_cpuid(cpuid_info* info, uint32 eaxRegister, uint32 cpuNum);
int32 is_computer_on();
double is_computer_on_fire();

/* Signals: to a thread of this team or to another team. B_BAD_THREAD_ID, B_BAD_VALUE for no such
   signal. set_signal_stack() gives the calling thread a stack to handle them on; null takes it
   back. */
int send_signal(thread_id threadID, unsigned int signal);
void set_signal_stack(void* base, size_t size);

/* Wait until one of the events of one of the objects holds, and answer for how many objects one
   does; `events` of each then tells which. B_TIMED_OUT, B_WOULD_BLOCK for a relative timeout of 0,
   B_INTERRUPTED by a signal with B_CAN_INTERRUPT. */
ssize_t wait_for_objects(object_wait_info* infos, int numInfos);
ssize_t wait_for_objects_etc(object_wait_info* infos, int numInfos, uint32 flags,
                             bigtime_t timeout);
}

// The info functions take the size of the structure that the caller was built with.
#define get_area_info(id, areaInfo) _get_area_info((id), (areaInfo), sizeof(*(areaInfo)))
#define get_next_area_info(team, cookie, areaInfo) \
    _get_next_area_info((team), (cookie), (areaInfo), sizeof(*(areaInfo)))
#define get_port_info(port, info) _get_port_info((port), (info), sizeof(*(info)))
#define get_next_port_info(team, cookie, info) \
    _get_next_port_info((team), (cookie), (info), sizeof(*(info)))
#define get_port_message_info_etc(port, info, flags, timeout) \
    _get_port_message_info_etc((port), (info), sizeof(*(info)), (flags), (timeout))
#define get_sem_info(sem, info) _get_sem_info((sem), (info), sizeof(*(info)))
#define get_next_sem_info(team, cookie, info) \
    _get_next_sem_info((team), (cookie), (info), sizeof(*(info)))
#define get_team_info(id, info) _get_team_info((id), (info), sizeof(*(info)))
#define get_next_team_info(cookie, info) _get_next_team_info((cookie), (info), sizeof(*(info)))
#define get_team_usage_info(team, who, info) \
    _get_team_usage_info((team), (who), (info), sizeof(*(info)))
#define get_thread_info(id, info) _get_thread_info((id), (info), sizeof(*(info)))
#define get_next_thread_info(team, cookie, info) \
    _get_next_thread_info((team), (cookie), (info), sizeof(*(info)))
#define get_cpu_info(firstCPU, cpuCount, info) \
    _get_cpu_info_etc((firstCPU), (cpuCount), (info), sizeof(*(info)))

#endif  // _OS_H
