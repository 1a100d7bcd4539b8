# The part of OpenWrt's build system that the recipes of packaging/openwrt use, written from its published rules: this
# file, include/package.mk and include/cmake.mk. WORK, DL_DIR, ARCH, JOBS and the compilers come from openwrt.sh.
.DEFAULT_GOAL:=all
INCLUDE_DIR:=$(TOPDIR)/include
BUILD_DIR:=$(WORK)/build_dir
STAGING_DIR:=$(WORK)/staging_dir
TOOLCHAIN_DIR:=$(WORK)/toolchain
PACKAGES_DIR:=$(WORK)/packages

TARGET_CFLAGS:=-Os -pipe -fno-plt -Wformat -Werror=format-security -fstack-protector -D_FORTIFY_SOURCE=1
TARGET_CXXFLAGS=$(TARGET_CFLAGS)
TARGET_LDFLAGS:=-L$(STAGING_DIR)/usr/lib -Wl,-z,now -Wl,-z,relro
FPIC:=-fPIC

INSTALL_DIR:=install -d -m0755
INSTALL_BIN:=install -m0755
CP:=cp -fpR
