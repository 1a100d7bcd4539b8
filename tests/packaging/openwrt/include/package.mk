# Fetched is what lies in DL_DIR. A recipe's steps run one after the other, and each package gets a folder.
PKG_BUILD_DIR?=$(BUILD_DIR)/$(PKG_NAME)-$(PKG_VERSION)
PKG_INSTALL_DIR?=$(PKG_BUILD_DIR)/ipkg-install

define newline


endef

define Build/Prepare
	echo "$(PKG_HASH)  $(DL_DIR)/$(PKG_SOURCE)" | sha256sum --check --quiet
	mkdir -p $(PKG_BUILD_DIR)
	tar --extract --file $(DL_DIR)/$(PKG_SOURCE) --directory $(PKG_BUILD_DIR)/..
endef

define BuildPackage
PACKAGES+=$(1)
endef

define install_package
	$(INSTALL_DIR) $(PACKAGES_DIR)/$(1)
	$(call Package/$(1)/install,$(PACKAGES_DIR)/$(1))
endef

.PHONY: all
all:
	rm -rf $(PKG_BUILD_DIR)
	$(Build/Prepare)
	$(Build/Configure)
	$(Build/Compile)
	$(Build/Install)
	$(call Build/InstallDev,$(STAGING_DIR))
	$(foreach package,$(PACKAGES),$(call install_package,$(package))$(newline))
