# The rooms of the house, from the ground up: a file includes headers of its own room and of rooms earlier in the
# list, of no other. CMake builds them in this order; tests/house/includes.py reads the lists and holds the sources
# against them.
set(ZUL_ROOMS base idl automation hostlib grid controls session ftp selection lookup messages options mainwindow
  component)

# The reference host is a program of its own, which knows the component through its contracts alone.
set(ZUL_HOST_MAY_USE base idl automation)
set(ZUL_HOST_ROOMS check dialect database demo services player session)
