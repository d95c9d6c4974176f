// The shared library is made of the component, closing and infrastructure
// archives, linked whole; its exported symbols are those marked QDR_EXPORT.
