# FTP and HTTP alone, with the system's own TLS.
source=curl

build() {
    local options=() name
    for name in DICT FILE GOPHER IMAP LDAP LDAPS MQTT POP3 RTSP SMB SMTP TELNET TFTP; do
        options+=("-DCURL_DISABLE_$name=ON")
    done
    for name in LIBSSH2 LIBIDN2 NGHTTP2 LIBRTMP ZLIB LIBPSL; do options+=("-DUSE_$name=OFF" "-DCURL_USE_$name=OFF"); done
    cmake_build -DBUILD_SHARED_LIBS=OFF -DBUILD_CURL_EXE=OFF -DBUILD_TESTING=OFF -DENABLE_MANUAL=OFF \
        -DENABLE_UNICODE=ON -DCURL_USE_SCHANNEL=ON -DCURL_ZLIB=OFF -DCURL_BROTLI=OFF -DCURL_ZSTD=OFF "${options[@]}"
}
