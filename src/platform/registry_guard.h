#pragma once

/// Keeps the toolkit from writing its cache of plug-ins and settings to the Windows registry: from
/// now on every creation of a key whose name contains "Trolltech" (letter case counts) gives error
/// 1 and creates nothing; all other calls go through. To be called before the application object
/// exists, on the main thread. Systems without that registry: nothing to do.
/// Returns the number of modules whose calls are now intercepted.
int installRegistryGuard();
