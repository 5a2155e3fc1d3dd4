"""A pyftpdlib server for the integration tests: pyftpd.py FOLDER PORT."""
import sys

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer

folder, port = sys.argv[1], int(sys.argv[2])
authorizer = DummyAuthorizer()
authorizer.add_user("user", "secret", folder, perm="elradfmwMT")
FTPHandler.authorizer = authorizer
FTPHandler.auth_failed_timeout = 0
FTPServer(("127.0.0.1", port), FTPHandler).serve_forever()
