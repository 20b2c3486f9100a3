// The least that answers a key with its LED: one panel, one epoll loop.

#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <sys/epoll.h>
#include <unistd.h>

struct Record
{
    int32_t seconds, microseconds;
    uint16_t type, code;
    int32_t value;
};

int main()
{
    const int panel = open("/dev/input/event2", O_RDWR | O_NONBLOCK);
    const int poll = epoll_create1(0);
    epoll_event interest{EPOLLIN, {}};
    if (panel < 0 || epoll_ctl(poll, EPOLL_CTL_ADD, panel, &interest) < 0)
        return 1;
    std::puts("ready");
    std::fflush(stdout);
    for (epoll_event event; epoll_wait(poll, &event, 1, -1) > 0;) {
        Record records[64];
        const ssize_t size = read(panel, records, sizeof records);
        if (size < 1)
            return 0;
        for (const Record *record = records; record < records + size / ssize_t(sizeof(Record)); ++record) {
            if (record->type != EV_KEY || record->value == 0)
                continue;
            const Record led{0, 0, EV_LED, uint16_t(record->code - 703), 1};
            if (write(panel, &led, sizeof led) < 0)
                return 1;
        }
    }
}
