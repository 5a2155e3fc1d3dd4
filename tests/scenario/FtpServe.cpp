// ftpserve: an FTP server for scenarios. It has one file, /export.txt, whose content is read from standard input
// up to the line "."; it prints its port and serves until standard input ends.
#include "tests/ftp/ScriptedServer.h"

#include <cstdint>
#include <iostream>
#include <string>

int main()
{
    zul::test::ScriptedServer server;
    std::string line;
    while (std::getline(std::cin, line) && line != ".") {
        server.files["/export.txt"] += line + "\r\n";
    }
    // Ports are signed 16-bit numbers to the client.
    std::cout << static_cast<std::int16_t>(server.port()) << std::endl;
    while (std::getline(std::cin, line)) {
    }
    return 0;
}
