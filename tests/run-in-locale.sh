#!/bin/sh
# Runs a test program under the locale of the run: Italian unless ZUL_TEST_LOCALE names another.
LC_ALL=${ZUL_TEST_LOCALE:-it_IT.UTF-8} exec "$@"
