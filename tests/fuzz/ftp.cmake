# What an FTP server can make the client read.
zul_fuzz(ftp_listing_fuzz SOURCES FtpListingFuzz.cpp LIBS zul_ftp)
zul_fuzz(ftp_reply_fuzz SOURCES FtpReplyFuzz.cpp LIBS zul_ftp)
