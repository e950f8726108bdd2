namespace qdm {}
