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
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{std::min(size, m_before.rlim_max), m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};
