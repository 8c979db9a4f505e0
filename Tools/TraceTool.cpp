// tov-trace: reads a trace stream that UnrealProfiler wrote, and prints it as text.
//
//   tov-trace dump FILE                  every packet, event type, event and scope
//   tov-trace summary FILE               threads, scopes by name (count, total, mean), counters, frames
//   tov-trace listen PORT [dump|summary] [--save FILE]
//                                        takes one connection on the port, as a trace server
//                                        would, reads it until it closes, then prints it
//
// Exit codes: 0 read whole, 1 the stream is damaged (what came before the damage is printed,
// and the reason goes to the standard error), 2 wrong arguments or an unreadable file or port.

#include "TraceReader/TraceListener.h"
#include "TraceReader/TraceReport.h"
#include "TraceReader/TraceStreamReader.h"
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace
{

int usage()
{
    std::cerr << "usage: tov-trace dump FILE | summary FILE | listen PORT [dump|summary] [--save FILE]\n";
    return 2;
}

bool readFile (const char* path, std::vector<uint8_t>& stream)
{
    std::ifstream file (path, std::ios::binary);
    if (! file)
        return false;
    stream.assign (std::istreambuf_iterator<char> (file), std::istreambuf_iterator<char>());
    return true;
}

int print (const std::vector<uint8_t>& stream, bool dump)
{
    tov::TraceStreamReader reader;
    const bool whole = reader.read (stream.data(), stream.size());
    const tov::TraceReport report (reader);
    std::cout << (dump ? report.getDump() : report.getSummary());
    if (whole)
        return 0;
    std::cerr << "tov-trace: " << reader.getError() << "\n";
    return 1;
}

int listen (int argc, char** argv)
{
    const int port = std::atoi (argv[2]);
    bool dump = false;
    const char* savePath = nullptr;
    for (int i = 3; i < argc; ++i)
    {
        if (std::strcmp (argv[i], "dump") == 0 || std::strcmp (argv[i], "summary") == 0)
            dump = std::strcmp (argv[i], "dump") == 0;
        else if (std::strcmp (argv[i], "--save") == 0 && i + 1 < argc)
            savePath = argv[++i];
        else
            return usage();
    }
    tov::TraceListener listener;
    if (port <= 0 || port > 65535 || ! listener.listen ((uint16_t) port, false))
    {
        std::cerr << "tov-trace: cannot listen on port " << argv[2] << "\n";
        return 2;
    }
    std::cerr << "tov-trace: listening on port " << listener.getPort() << std::endl;
    const auto stream = listener.receive();
    if (savePath != nullptr)
        std::ofstream (savePath, std::ios::binary).write (reinterpret_cast<const char*> (stream.data()), (std::streamsize) stream.size());
    return print (stream, dump);
}

} // namespace

int main (int argc, char** argv)
{
    if (argc >= 3 && std::strcmp (argv[1], "listen") == 0)
        return listen (argc, argv);
    if (argc != 3 || (std::strcmp (argv[1], "dump") != 0 && std::strcmp (argv[1], "summary") != 0))
        return usage();
    std::vector<uint8_t> stream;
    if (! readFile (argv[2], stream))
    {
        std::cerr << "tov-trace: cannot read " << argv[2] << "\n";
        return 2;
    }
    return print (stream, std::strcmp (argv[1], "dump") == 0);
}
