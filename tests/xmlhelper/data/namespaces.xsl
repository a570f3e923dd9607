<?xml version="1.0"?>
<!-- Copies a namespaced document, renaming one namespace and dropping another. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:c="urn:example:contacts" xmlns:x="urn:example:extra"
                xmlns:d="urn:example:directory" exclude-result-prefixes="c x">
  <xsl:template match="c:*">
    <xsl:element name="d:{local-name()}">
      <xsl:apply-templates select="@*|node()"/>
    </xsl:element>
  </xsl:template>
  <xsl:template match="x:*"/>
  <xsl:template match="@*">
    <xsl:copy/>
  </xsl:template>
  <xsl:template match="c:contacts">
    <d:directory source="{namespace-uri()}">
      <xsl:apply-templates select="c:person[@kind = 'staff']"/>
    </d:directory>
  </xsl:template>
</xsl:stylesheet>
