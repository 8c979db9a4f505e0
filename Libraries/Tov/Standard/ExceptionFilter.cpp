#include "ExceptionFilter.h"
#include <csignal>

namespace tov
{

void ExceptionFilter::start()
{
    if (started)
        return;
    previousPipeHandler = std::signal (SIGPIPE, SIG_IGN);
    started = true;
}

void ExceptionFilter::stop()
{
    if (! started)
        return;
    std::signal (SIGPIPE, previousPipeHandler == SIG_ERR ? SIG_DFL : previousPipeHandler);
    started = false;
}

} // namespace tov
