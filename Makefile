# Everything from a fresh Debian 12 machine: `make demo` and `make test`.
PRESET ?= default
BUILD := build/$(PRESET)
DEMO := demo/demo.kdb
JOBS ?= $(shell nproc)

# Debian packages the build, the tests and the demo need.
DEBS := cmake ninja-build g++ pkg-config libsqlite3-dev sqlite3 libgtest-dev libgmock-dev \
        nlohmann-json3-dev libutf8proc-dev libbenchmark-dev qt6-base-dev qt6-svg-dev xvfb xauth poppler-utils \
        fonts-noto-core fonts-dejavu-core libxlsxwriter-dev libminizip-dev

.PHONY: all deps build test demo clean

all: build

deps:
	@missing=$$(for p in $(DEBS); do \
	    dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q '^install ok installed' || echo $$p; \
	  done); \
	if [ -n "$$missing" ]; then \
	  echo "Installing the missing Debian packages:" $$missing; \
	  if [ "$$(id -u)" = 0 ]; then sudo=; else sudo=sudo; fi; \
	  $$sudo apt-get update -qq && \
	  $$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $$missing; \
	fi

build: deps
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) -j $(JOBS)

test: build
	ctest --preset $(PRESET) -j $(JOBS)

demo: build
	@mkdir -p demo
	@rm -f $(DEMO) $(DEMO)-wal $(DEMO)-shm
	$(BUILD)/bin/qx demo $(DEMO)
	@if [ -n "$$DISPLAY" ] || [ -n "$$WAYLAND_DISPLAY" ]; then \
	  $(BUILD)/bin/qxdesk $(DEMO); \
	else \
	  echo; \
	  echo "The demo company is ready: $$(pwd)/$(DEMO)"; \
	  echo "There is no display here, so QX Desk was not opened. On a desktop, open it with:"; \
	  echo "  $(BUILD)/bin/qxdesk $(DEMO)"; \
	  echo "or look into it from here:"; \
	  echo "  $(BUILD)/bin/qx sql $(DEMO) \"SELECT FIRST 1 MARKETID, MARKETNAME FROM MARKETMASTER\""; \
	fi

clean:
	rm -rf build demo
