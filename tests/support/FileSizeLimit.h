#pragma once

#include <algorithm>
#include <csignal>
#include <sys/resource.h>

// While it exists, writing beyond the size fails as on a full disk, for root too.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        set(size);
    }
    ~FileSizeLimit() { set(RLIM_INFINITY); }

private:
    static void set(rlim_t size)
    {
        rlimit limit{};
        ::getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = std::min(size, limit.rlim_max);
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
};
